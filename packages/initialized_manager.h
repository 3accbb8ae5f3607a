// A foreign manager between Initialize and Terminate.
#pragma once

#include <cape-open.h>

#include "guard/foreign_call.h"

namespace zelt {

class InitializedManager {
public:
    // Initializes the manager if it has ICapeUtilities; Result() says how that went, S_OK for a manager without it.
    explicit InitializedManager(IUnknown* manager) : utilities(QueryForeign<ICapeUtilities>(manager))
    {
        if (utilities) result = CallForeign([&] { return utilities->Initialize(); });
    }
    // Terminates the manager if it was initialized.
    ~InitializedManager()
    {
        if (utilities && SUCCEEDED(result)) AttemptForeign([&] { utilities->Terminate(); });
    }
    InitializedManager(const InitializedManager&) = delete;
    InitializedManager& operator=(const InitializedManager&) = delete;

    [[nodiscard]] HRESULT Result() const { return result; }
    // The object that describes a failure.
    IUnknown* ErrorSource() const { return utilities.Get(); }

private:
    ForeignPtr<ICapeUtilities> utilities;
    HRESULT result = S_OK;
};

}  // namespace zelt
