// A registry root for one test: a key of its own, removed with everything below it when the test ends.
#pragma once

#include <gtest/gtest.h>

#include "core/registry.h"

class ScratchRegistry {
public:
    ScratchRegistry()
    {
        zelt::DeleteKeyTree({}, kPath);
        EXPECT_EQ(ERROR_SUCCESS, key.Create({}, kPath));
    }
    ~ScratchRegistry() { zelt::DeleteKeyTree({}, kPath); }
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    zelt::RegistryRoot Root() const { return {key.Get(), 0}; }

    // The key of the settings, made when missing.
    zelt::RegistryKey Settings() const
    {
        zelt::RegistryKey settings;
        EXPECT_EQ(ERROR_SUCCESS, settings.Create(Root(), L"Software\\ZELT"));
        return settings;
    }

    // From now on nothing can be opened or created below the root: its key is gone while the handle is still open.
    void MakeInaccessible() { zelt::DeleteKeyTree({}, kPath); }

private:
    static constexpr wchar_t kPath[] = L"Software\\ZELT unit tests";
    zelt::RegistryKey key;
};
