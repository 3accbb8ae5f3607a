// Compares values of recordings, and reads the calls of a recording as trees.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "recording/call_tree.h"
#include "recording/comparison.h"
#include "recording/record_writer.h"
#include "tests/recordings/element_types.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

using namespace recording;

Value Real(double number)
{
    Value value;
    value.form = Value::Form::Real;
    value.real = number;
    return value;
}

Value Text(std::string_view text)
{
    Value value;
    value.form = Value::Form::Text;
    value.bytes = text;
    return value;
}

// An array whose elements have this VARTYPE. `numbers` must outlive the value.
template <class T>
Value ArrayOf(std::uint16_t type, const std::vector<T>& numbers, int lower = 0)
{
    Value value;
    value.type = kArray | type;
    value.form = Value::Form::Array;
    ArrayValue array;
    array.elementSize = sizeof(T);
    array.elementType = type;
    array.bounds = {{lower, static_cast<int>(numbers.size())}};
    array.numbers = {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(T)};
    value.array.push_back(std::move(array));
    return value;
}

Value Array(const std::vector<double>& numbers, int lower = 0) { return ArrayOf(kReal, numbers, lower); }

std::string DifferenceOf(const Value& recorded, const Value& actual, double tolerance = 0)
{
    return Difference(recorded, actual, tolerance).value_or("none");
}

TEST(Comparison, OfRealNumbersIsToTheBit)
{
    EXPECT_EQ("none", DifferenceOf(Real(0.1), Real(0.1)));
    EXPECT_EQ("0.30000000000000004 instead of 0.3", DifferenceOf(Real(0.3), Real(0.1 + 0.2)));
    EXPECT_EQ("-0 instead of 0", DifferenceOf(Real(0.0), Real(-0.0)));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ("none", DifferenceOf(Real(nan), Real(nan)));
    EXPECT_EQ("1 instead of nan", DifferenceOf(Real(nan), Real(1), 1));
}

TEST(Comparison, ToleratesWhatTheUserAllows)
{
    EXPECT_EQ("none", DifferenceOf(Real(100), Real(100.9), 0.01));
    EXPECT_EQ("none", DifferenceOf(Real(100.9), Real(100), 0.01));
    EXPECT_EQ("102 instead of 100", DifferenceOf(Real(100), Real(102), 0.01));
    EXPECT_EQ("inf instead of 1e+308", DifferenceOf(Real(1e308), Real(std::numeric_limits<double>::infinity()), 0.5));
    EXPECT_EQ("none", DifferenceOf(Array({1, 2}), Array({1, 2.0000001}), 1e-6));
}

TEST(Comparison, SaysWhereAnArrayDiffers)
{
    const std::vector<double> one = {1, 2, 3}, other = {1, 2, 4}, shorter = {1, 2};
    EXPECT_EQ("none", DifferenceOf(Array(one), Array(one)));
    EXPECT_EQ("[2]: 4 instead of 3", DifferenceOf(Array(one), Array(other)));
    EXPECT_EQ("[1 2] instead of [1 2 3]", DifferenceOf(Array(one), Array(shorter)));
    EXPECT_EQ("other bounds", DifferenceOf(Array(one), Array(one, 1)));
}

TEST(Comparison, OfFloatsHasTheToleranceToo)
{
    const std::vector<float> one = {1, 0.1F}, close = {1, 0.1000001F}, other = {1, 0.2F};
    EXPECT_EQ("none", DifferenceOf(ArrayOf(kFloat, one), ArrayOf(kFloat, close), 1e-5));
    EXPECT_EQ("[1]: 0.1000001 instead of 0.1", DifferenceOf(ArrayOf(kFloat, one), ArrayOf(kFloat, close)));
    EXPECT_EQ("[1]: 0.2 instead of 0.1", DifferenceOf(ArrayOf(kFloat, one), ArrayOf(kFloat, other), 1e-5));
}

TEST(Comparison, ShowsBytesAsNumbers)
{
    const std::vector<unsigned char> one = {1, 200}, other = {1, 201};
    EXPECT_EQ("[1]: 201 instead of 200", DifferenceOf(ArrayOf(kByte, one), ArrayOf(kByte, other), 1));
}

TEST(Comparison, OfDifferentSortsOfValues)
{
    EXPECT_EQ("none instead of \"Feed\"", DifferenceOf(Text("Feed"), Value()));
    EXPECT_EQ("\"Tops\" instead of \"Feed\"", DifferenceOf(Text("Feed"), Text("Tops")));
    EXPECT_EQ("1 instead of \"1\"", DifferenceOf(Text("1"), Real(1)));
    Value object, otherObject;
    object.form = otherObject.form = Value::Form::Pointer;
    object.address = 1;
    otherObject.address = 2;
    EXPECT_EQ("none", DifferenceOf(object, otherObject));
    EXPECT_EQ("none instead of object", DifferenceOf(object, Value()));
    Value wide = Real(1);
    wide.type = 7;
    EXPECT_EQ("1 of another type: 7 instead of 0", DifferenceOf(Real(1), wide));
}

// Damage can leave an array with both elements and numbers, and with fewer numbers than elements.
TEST(Comparison, OfAnArrayWithElementsAndNumbersReadsNeitherBeyondItsEnd)
{
    const std::vector<double> two = {1, 2}, one = {1};
    Value recorded = Array(two), actual = Array(one);
    for (Value* const value : {&recorded, &actual}) {
        value->array.front().bounds = {{0, 1000}};
        for (int i = 0; i < 1000; ++i) value->array.front().elements.push_back(Real(1));
    }
    EXPECT_EQ("elements of another type", DifferenceOf(recorded, actual));
    EXPECT_EQ("elements of another type", DifferenceOf(actual, recorded));
    EXPECT_EQ("none", DifferenceOf(recorded, recorded));
}

TEST(Summary, ShortensLongTextsBetweenCharacters)
{
    EXPECT_EQ("\"" + std::string(39, 'x') + "...\"", Summary(Text(std::string(39, 'x') + "\xC3\xB6\xC3\xB6")));
    EXPECT_EQ("[1 2 3 4 ... of 5]", Summary(Array({1, 2, 3, 4, 5})));
}

TEST(CallTree, KeepsACallWithAllThatIsNestedInIt)
{
    const std::string bytes = SampleRecording();
    std::size_t at = 0;
    RecordReader records([&](char* out, std::size_t count) {
        count = std::min(count, bytes.size() - at);
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    });
    ASSERT_TRUE(std::holds_alternative<HeaderRecord>(*records.Next()));
    CallTreeReader calls(records);
    const std::unique_ptr<KeptCall> call = calls.Next();
    ASSERT_TRUE(call);
    ASSERT_TRUE(calls.Component());
    EXPECT_EQ("Aromatics", calls.Component()->exportedName);
    EXPECT_EQ(1u, call->number);
    EXPECT_EQ("ICapeThermoEquilibriumRoutine::CalcEquilibrium", call->call.member);
    EXPECT_EQ(0x1000u, call->object.pointer);
    EXPECT_EQ(0x2000u, call->object.proxy);
    EXPECT_TRUE(call->hasEnded);
    EXPECT_EQ(0x8004050Cu, call->result.status);
    EXPECT_EQ("did not converge", call->result.description);
    EXPECT_EQ(-7, call->arguments.at(0).value.integer);
    EXPECT_EQ(std::string(300, 'r'), call->arguments.at(3).value.bytes);
    ASSERT_EQ(1u, call->nested.size());
    const KeptCall& nested = *call->nested[0];
    EXPECT_EQ(2u, nested.number);
    EXPECT_TRUE(nested.call.isOutward);
    EXPECT_EQ(0x12345678u, nested.object.pointer);
    EXPECT_EQ(1e5, nested.arguments.at(0).value.real);
    EXPECT_EQ(true, calls.Queries().Answer(0x12345678, "fedcba9876543210"));
    EXPECT_EQ(true, calls.Queries().Answer(0x4000, "fedcba9876543210"));
    EXPECT_FALSE(calls.Queries().Answer(0x1000, "fedcba9876543210"));
    EXPECT_FALSE(calls.Next());
    EXPECT_TRUE(calls.IsClosed());
}

TEST(CallTree, OfEveryCutHasTheCallsUpToThere)
{
    const std::string whole = SampleRecording();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::size_t at = 0;
        RecordReader records([&](char* out, std::size_t count) {
            count = std::min(count, length - at);
            std::memcpy(out, whole.data() + at, count);
            at += count;
            return count;
        });
        CallTreeReader calls(records);
        int outermost = 0;
        while (calls.Next()) ++outermost;
        EXPECT_LE(outermost, 1);
        EXPECT_FALSE(calls.IsClosed());
    }
}

TEST(CallTree, RefusesCallsWithoutEnd)
{
    std::string bytes;
    RecordWriter writer([&bytes](std::string_view more) {
        bytes += more;
        return true;
    });
    for (int call = 0; call < 3000; ++call) writer.BeginCall("ICapeUtilities::Edit", "Aromatics", 0, false, 0);
    writer.Flush();
    std::size_t at = 0;
    RecordReader records([&](char* out, std::size_t count) {
        count = std::min(count, bytes.size() - at);
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    });
    EXPECT_THROW(CallTreeReader(records).Next(), std::runtime_error);
}

}  // namespace
}  // namespace zelt::test
