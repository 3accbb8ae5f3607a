// PRAVIK from the registered server, used by clients of both widths: created, connected, saved, and loaded by another
// process.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"
#include "tests/unit/support/vendor/vendor_device.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

// {4C3F7A52-6E0D-4B1B-9A55-8C21E0B7D301}, which the client serves.
constexpr CLSID kServedUnit = {0x4C3F7A52, 0x6E0D, 0x4B1B, {0x9A, 0x55, 0x8C, 0x21, 0xE0, 0xB7, 0xD3, 0x01}};

class ServedUnitOperation : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({});
        ChooseUnit(kServedUnit);
        file = fs::temp_directory_path() / (L"ZELT unit " + std::to_wstring(GetCurrentProcessId()));
    }
    void TearDown() override
    {
        std::error_code ignored;
        fs::remove(file, ignored);
        ServedPackages::TearDown();
    }
    static fs::path Client(Width width) { return BuiltProgram(width, "tests/system/unit_operation/unit_client.exe"); }
    static SimulatorResult Run(Width width, const wchar_t* what, const fs::path& file)
    {
        return RunSimulator(L'"' + Client(width).wstring() + L"\" " + what + L" \"" + file.wstring() + L"\" " +
                            kThisEdition[OwnClass::UnitOperation].progId);
    }
    static bool Contains(const std::string& text, const std::string& part) { return text.find(part) != text.npos; }

    // Has a client calculate and save a unit. Checks what the client prints, and the saved bytes.
    void SaveWith(Width width)
    {
        const SimulatorResult saved = Run(width, L"save", file);
        ASSERT_EQ(0u, saved.exitCode) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "tells its class: yes\n")) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "own object back: yes\n")) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "unit has it: wrapped\n")) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "state: calculated with 42\n")) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "IsDirty: 0x00000001\n")) << saved.output;
        EXPECT_TRUE(Contains(saved.output, "size: 38\n")) << saved.output;

        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        std::string expected(reinterpret_cast<const char*>(&kServedUnit), sizeof kServedUnit);
        expected += std::string("\x12\0\0\0", 4) + "calculated with 42";
        EXPECT_EQ(expected, bytes);
    }
    void LoadWith(Width width)
    {
        const SimulatorResult loaded = Run(width, L"load", file);
        ASSERT_EQ(0u, loaded.exitCode) << loaded.output;
        EXPECT_TRUE(Contains(loaded.output, "state: calculated with 42\n")) << loaded.output;
        EXPECT_TRUE(Contains(loaded.output, "valid: yes\n")) << loaded.output;
    }

    fs::path file;
};

TEST_F(ServedUnitOperation, IsSavedAndLoadedByProcessesOf32Bit)
{
    SaveWith(Width::Bits32);
    const std::string log = OnlyLog();
    for (const char* part :
         {"<info value=\"Object type: PRAVIK Logged Unit Operation\"/>", "IPersistStreamInit::InitNew",
          "Automatically creating user configured unit operation: {4C3F7A52-6E0D-4B1B-9A55-8C21E0B7D301}",
          "Replacing object by logged parameter collection for port type CAPE_ENERGY", "ICapeUnit::Calculate",
          "<func name=\"ICapeCollection::Count\" direc=\"out\"", "Using IPersistStreamInit::Save of logged PMC",
          "</zeltlogdocument>"}) {
        EXPECT_TRUE(Contains(log, part)) << part << "\n" << log;
    }
    LoadWith(Width::Bits32);
}

TEST_F(ServedUnitOperation, IsSavedAndLoadedByProcessesOf64Bit)
{
    if (!fs::exists(Client(Width::Bits64))) GTEST_SKIP() << "the 64-bit client is not built";
    SaveWith(Width::Bits64);
    LoadWith(Width::Bits64);
}

TEST_F(ServedUnitOperation, WhatOneWidthSavesTheOtherLoads)
{
    if (!fs::exists(Client(Width::Bits64))) GTEST_SKIP() << "the 64-bit client is not built";
    SaveWith(Width::Bits64);
    LoadWith(Width::Bits32);
    SaveWith(Width::Bits32);
    LoadWith(Width::Bits64);
}

// Through ZELT, a client uses an interface of its unit that only a vendor's type library describes.
class VendorInterfaces : public ServedUnitOperation, public testing::WithParamInterface<Width> {};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, VendorInterfaces, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(VendorInterfaces, ArePartOfAServedUnit)
{
    if (!fs::exists(Client(GetParam()))) GTEST_SKIP() << "the 64-bit client is not built";
    const fs::path path = fs::path(BuiltFile("idl/vendor.tlb")).make_preferred();
    // Registers the library for the server; the client registers it for its own width.
    const VendorLibrary library(path.c_str());
    ASSERT_EQ(S_OK, library.Result());
    const SimulatorResult run = Run(GetParam(), L"vendor", path);
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_TRUE(Contains(run.output,
                         "base: 0x80004002\n"
                         "answers: Mix 10.750000, Mode 7, Count 9000000200, described 6.000000, refused; by name "
                         "Mode 0, Mix 10.750000\n"))
        << run.output;
    EXPECT_EQ("", MatchGolden("vendor_unit.zlg", Comparable(OnlyLog(), Addresses::Alike)));
}

}  // namespace
}  // namespace zelt::test
