// The logged unit operation: how it comes to the unit that it wraps, and what it says when it does not.
#include "core/error_description.h"
#include "core/log_location.h"
#include "core/narrow.h"
#include "fake_unit.h"
#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {
namespace {

class UnitOperationTest : public UnitFixture {
protected:
    // The error line that closes a call with E_FAIL.
    static std::string Failed(int depth = 1) { return Error(ErrorText(E_FAIL, nullptr), depth); }
    static std::string Created() { return Info(std::string("Created unit operation from CLSID ") + kFakeUnitText); }
};

TEST_F(UnitOperationTest, TheWayOfAUnit)
{
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew",
                       Info(std::string("Automatically creating user configured unit operation: ") + kFakeUnitText) +
                           Created()),
              News());
    EXPECT_EQ(0, selectionScript.asked);
    EXPECT_EQ((std::vector<std::string>{"init.InitNew"}), unitScript.calls);

    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->Calculate());
    EXPECT_EQ(UnitFunc("ICapeUtilities::Initialize", "") + UnitFunc("ICapeUnit::Calculate", ""), News());
    EXPECT_EQ((std::vector<std::string>{"init.InitNew", "Initialize", "Calculate"}), unitScript.calls);
}

}  // namespace
}  // namespace zelt::test
