#include "log/variant_writer.h"

#include <cape-open.h>
#include <comutil.h>

#include <limits>

#include "dynamic_fake.h"
#include "log_fixture.h"

namespace zelt::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A VARIANT with a one-dimensional array of T.
template <class T>
_variant_t Array(VARTYPE type, std::initializer_list<T> elements, LONG lowerBound = 0)
{
    SAFEARRAYBOUND bound = {static_cast<ULONG>(elements.size()), lowerBound};
    SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
    T* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    std::copy(elements.begin(), elements.end(), data);
    SafeArrayUnaccessData(array);
    VARIANT value;
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = array;
    return _variant_t(value, false);
}

_variant_t Doubles(std::initializer_list<double> elements, LONG lowerBound = 0)
{
    return Array<double>(VT_R8, elements, lowerBound);
}

std::string Bounds(int lower, int upper)
{
    return " <info value=\"Lower bound: " + std::to_string(lower) +
           "\"/>\n <info value=\"Upper bound: " + std::to_string(upper) + "\"/>\n";
}

class VariantWriterTest : public LogFixture {
protected:
    void Expect(const VARIANT& value, Shape shape, const std::string& type, const std::string& lines)
    {
        const std::string before = Written();
        WriteArg(*document, "x", true, value, shape);
        EXPECT_EQ(before + "<arg name=\"x\" direc=\"in\" type=\"" + type + "\">\n" + lines + "</arg>\n", Written());
    }
};

TEST_F(VariantWriterTest, ArrayOfDoublesWithItsBounds)
{
    Expect(Doubles({1, 2.5, 1e-10}), kDoubles, "VT_ARRAY|VT_R8",
           Bounds(0, 2) + " <argval value=\"1\"/>\n <argval value=\"2.5\"/>\n <argval value=\"1e-10\"/>\n");
    Expect(Doubles({7}, -3), kDoubles, "VT_ARRAY|VT_R8", Bounds(-3, -3) + " <argval value=\"7\"/>\n");
    Expect(Doubles({}), kDoubles, "VT_ARRAY|VT_R8", Bounds(0, -1));
}

TEST_F(VariantWriterTest, UndefinedElements)
{
    Expect(Doubles({kNaN, -1.7976931348623157e308}), kDoubles, "VT_ARRAY|VT_R8",
           Bounds(0, 1) +
               " <argval value=\"N/A\"/>\n <argval value=\"N/A\"/>\n"
               " <warning value=\"Old value for CapeDoubleEmpty used: should be NaN\"/>\n");
}

TEST_F(VariantWriterTest, ArraysOfOtherTypes)
{
    Expect(Array<short>(VT_I2, {-1, 3}), kAnything, "VT_ARRAY|VT_I2",
           Bounds(0, 1) + " <argval value=\"-1\"/>\n <argval value=\"3\"/>\n");
    Expect(Array<LONG>(VT_I4, {-70000}), kAnything, "VT_ARRAY|VT_I4", Bounds(0, 0) + " <argval value=\"-70000\"/>\n");
    Expect(Array<VARIANT_BOOL>(VT_BOOL, {VARIANT_TRUE, VARIANT_FALSE}), kAnything, "VT_ARRAY|VT_BOOL",
           Bounds(0, 1) + " <argval value=\"TRUE\"/>\n <argval value=\"FALSE\"/>\n");
    Expect(Array<float>(VT_R4, {1.0f}), kAnything, "VT_ARRAY|VT_R4",
           Bounds(0, 0) + " <warning value=\"Value type is not supported by logger\"/>\n");
}

TEST_F(VariantWriterTest, ArrayOfStrings)
{
    const _variant_t strings =
        Array<BSTR>(VT_BSTR, {SysAllocString(L"water"), nullptr, SysAllocString(L""), SysAllocStringLen(L"a\0b", 3)});
    Expect(strings, kStrings, "VT_ARRAY|VT_BSTR",
           Bounds(0, 3) +
               " <argval value=\"&quot;water&quot;\"/>\n <argval value=\"&lt;NULL&gt;\"/>\n"
               " <argval value=\"&quot;&quot;\"/>\n <argval value=\"&quot;a&quot;\"/>\n"
               " <error value=\"Not a valid BSTR value\"/>\n");
}

TEST_F(VariantWriterTest, ArrayOfVariantsNestsEachValue)
{
    VARIANT number;
    number.vt = VT_R8;
    number.dblVal = 373.15;
    VARIANT empty;
    empty.vt = VT_EMPTY;
    VARIANT text;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"7732-18-5");
    VARIANT inner = Doubles({1}).Detach();
    Expect(Array<VARIANT>(VT_VARIANT, {number, empty, text, inner}), kVariants, "VT_ARRAY|VT_VARIANT",
           Bounds(0, 3) +
               " <argval value=\"VT_R8\">\n  <argval value=\"373.15\"/>\n </argval>\n"
               " <argval value=\"VT_EMPTY\">\n </argval>\n"
               " <argval value=\"VT_BSTR\">\n  <argval value=\"&quot;7732-18-5&quot;\"/>\n </argval>\n"
               " <argval value=\"VT_ARRAY|VT_R8\">\n"
               "  <info value=\"Lower bound: 0\"/>\n  <info value=\"Upper bound: 0\"/>\n"
               "  <argval value=\"1\"/>\n </argval>\n");
}

TEST_F(VariantWriterTest, MoreThanOneDimension)
{
    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 0}};
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = SafeArrayCreate(VT_R8, 2, bounds);
    Expect(_variant_t(value, false), kDoubles, "VT_ARRAY|VT_R8",
           " <warning value=\"Multi-dimensional values not supported by logger. Value has 2 dimensions\"/>\n");
}

TEST_F(VariantWriterTest, NullArray)
{
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = nullptr;
    Expect(value, kDoubles, "VT_ARRAY|VT_R8",
           " <error value=\"Type check error: unexpected dimension; 1-dimensional array expected\"/>\n");
}

TEST_F(VariantWriterTest, ReadingLeavesNoLockOnAnArrayWithoutData)
{
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(S_OK, SafeArrayAllocDescriptorEx(VT_R8, 1, &array));
    array->cbElements = sizeof(double);
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = array;
    Expect(value, kDoubles, "VT_ARRAY|VT_R8", Bounds(0, -1));
    EXPECT_EQ(0u, array->cLocks);
    EXPECT_EQ(S_OK, SafeArrayDestroy(array));
}

TEST_F(VariantWriterTest, ArrayThatDoesNotTellItsElementTypeIsReadAsDeclared)
{
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(S_OK, SafeArrayAllocDescriptor(1, &array));
    array->cbElements = sizeof(double);
    array->rgsabound[0] = {1, 0};
    ASSERT_EQ(S_OK, SafeArrayAllocData(array));
    *static_cast<double*>(array->pvData) = 2.5;
    VARIANT value;
    value.vt = VT_ARRAY | VT_R8;
    value.parray = array;
    Expect(value, kDoubles, "VT_ARRAY|VT_R8", Bounds(0, 0) + " <argval value=\"2.5\"/>\n");
    EXPECT_EQ(S_OK, SafeArrayDestroy(array));
}

TEST_F(VariantWriterTest, ArrayByReferenceIsRead)
{
    _variant_t owner = Doubles({4});
    VARIANT value;
    value.vt = VT_ARRAY | VT_BYREF | VT_R8;
    value.pparray = &owner.parray;
    Expect(value, kAnything, "VT_ARRAY|VT_BYREF|VT_R8", Bounds(0, 0) + " <argval value=\"4\"/>\n");
    value.pparray = nullptr;
    Expect(value, kAnything, "VT_ARRAY|VT_BYREF|VT_R8",
           " <error value=\"Type check error: unexpected dimension; 1-dimensional array expected\"/>\n");
}

TEST_F(VariantWriterTest, WrongElementTypeIsNotRead)
{
    Expect(Array<BSTR>(VT_BSTR, {nullptr}), kDoubles, "VT_ARRAY|VT_BSTR",
           Bounds(0, 0) +
               " <error value=\"Type check error: Expected an array of type double precision\"/>\n"
               " <error value=\"Invalid type for argument x: expected VT_ARRAY|VT_R8\"/>\n");
}

TEST_F(VariantWriterTest, WrongElementsAreNamedByTheWordForTheirType)
{
    const struct {
        VARTYPE expected;
        const char *type, *word;
    } kRows[] = {
        {VT_EMPTY, "VT_EMPTY", "EMPTY"},
        {VT_I2, "VT_I2", "short"},
        {VT_I4, "VT_I4", "long"},
        {VT_R8, "VT_R8", "double precision"},
        {VT_BSTR, "VT_BSTR", "string"},
        {VT_VARIANT, "VT_VARIANT", "VARIANT"},
        {VT_BOOL, "VT_BOOL", "&lt;unknown&gt;"},
        {VT_DISPATCH, "VT_DISPATCH", "&lt;unknown&gt;"},
    };
    _variant_t floats = Array<float>(VT_R4, {1.5f});
    for (const auto& row : kRows) {
        // The VARIANT says one type, its array another.
        VARIANT value = floats;
        value.vt = static_cast<VARTYPE>(VT_ARRAY | row.expected);
        Expect(value, kAnything, std::string("VT_ARRAY|") + row.type,
               Bounds(0, 0) + " <error value=\"Type check error: Expected an array of type " + row.word + "\"/>\n");
    }
}

TEST_F(VariantWriterTest, EmptyWhereAListMayBeLeftOut)
{
    VARIANT empty;
    empty.vt = VT_EMPTY;
    Expect(empty, kOptionalStrings, "VT_EMPTY", "");
    Expect(empty, kAnything, "VT_EMPTY", "");
    Expect(empty, kStrings, "VT_EMPTY", " <error value=\"Invalid type for argument x: expected VT_ARRAY|VT_BSTR\"/>\n");
}

TEST_F(VariantWriterTest, Scalars)
{
    Expect(_variant_t(L"a<b"), kAnything, "VT_BSTR", " <argval value=\"&quot;a&lt;b&quot;\"/>\n");
    VARIANT nothing;
    nothing.vt = VT_BSTR;
    nothing.bstrVal = nullptr;
    Expect(nothing, kAnything, "VT_BSTR", " <argval value=\"&lt;EMPTY STRINGVAL&gt;\"/>\n");
    Expect(_variant_t(8.31446), kAnything, "VT_R8", " <argval value=\"8.31446\"/>\n");
    Expect(_variant_t(kNaN), kAnything, "VT_R8", " <argval value=\"N/A\"/>\n");
    Expect(_variant_t(-1.7976931348623157e308), kAnything, "VT_R8",
           " <argval value=\"N/A\"/>\n <warning value=\"Old value for CapeDoubleEmpty used. Should be NaN\"/>\n");
    Expect(_variant_t(42L), kAnything, "VT_I4", " <argval value=\"42\"/>\n");
    Expect(_variant_t(42L), kDoubles, "VT_I4",
           " <argval value=\"42\"/>\n <error value=\"Invalid type for argument x: expected VT_ARRAY|VT_R8\"/>\n");
    VARIANT null;
    null.vt = VT_NULL;
    Expect(null, kAnything, "VT_NULL", " <argval value=\"&lt;unable to format value&gt;\"/>\n");
    // The writer does not get the default property: that would be a call that no log shows.
    const auto object = DynamicFake::Make(L"object");
    object->handler = [](const IncomingCall&) {
        ADD_FAILURE() << "the object was called";
        return E_FAIL;
    };
    const auto face = object->Face(__uuidof(ICapeIdentification));
    VARIANT dispatch;
    dispatch.vt = VT_DISPATCH;
    dispatch.pdispVal = face.Get();
    Expect(dispatch, kAnything, "VT_DISPATCH", " <argval value=\"&lt;unable to format value&gt;\"/>\n");
    VARIANT reference;
    double target = 2.5;
    reference.vt = VT_BYREF | VT_R8;
    reference.pdblVal = &target;
    Expect(reference, kAnything, "VT_BYREF|VT_R8", " <argval value=\"2.5\"/>\n");
}

TEST_F(VariantWriterTest, UnknownTypesAreEscaped)
{
    VARIANT odd;
    odd.vt = 0x0F0;
    Expect(odd, kAnything, "&lt;unknown&gt;", " <argval value=\"&lt;unable to format value&gt;\"/>\n");
    EXPECT_EQ("VT_ARRAY|VT_VECTOR|VT_BYREF|VT_RESERVED|<unknown>", VariantTypeName(0xF0F0));
    EXPECT_EQ("VT_EMPTY", VariantTypeName(VT_EMPTY));
    EXPECT_EQ("VT_BSTR_BLOB", VariantTypeName(VT_BSTR_BLOB));
}

}  // namespace
}  // namespace zelt::test
