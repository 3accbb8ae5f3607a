// Values made from recordings: even in a damaged or forged recording, only interface pointers can refer to memory that is
// not there.
#include "log/recording/recorded_variant.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <stdexcept>
#include <utility>

namespace zelt::test {
namespace {

using recording::ArrayValue;
using recording::Value;
using Form = Value::Form;

Value Scalar(VARTYPE type, Form form)
{
    Value value;
    value.type = type;
    value.form = form;
    value.integer = 0x1234;
    value.address = 0x1234;
    value.bytes = "text";
    return value;
}

Value OfArray(VARTYPE type, std::uint32_t elementSize, int count)
{
    Value value;
    value.type = VT_ARRAY | type;
    value.form = Form::Array;
    ArrayValue array;
    array.elementSize = elementSize;
    array.elementType = type;
    array.bounds = {{0, count}};
    value.array.push_back(std::move(array));
    return value;
}

constexpr char kSixteenBytes[] = "0123456789abcdef";

TEST(RecordedVariants, RefuseAFormThatIsNotThatOfTheType)
{
    const Value refused[] = {Scalar(VT_BSTR, Form::Integer),
                             Scalar(VT_BSTR, Form::Pointer),
                             Scalar(VT_UNKNOWN, Form::Integer),
                             Scalar(VT_DISPATCH, Form::Text),
                             Scalar(VT_BYREF | VT_BSTR, Form::Integer),
                             Scalar(VT_R8, Form::Text),
                             Scalar(VT_I4, Form::Pointer),
                             Scalar(VT_RECORD, Form::Integer),
                             Scalar(VT_BYREF, Form::Integer),
                             Scalar(VT_ARRAY | VT_R8, Form::Real),
                             Scalar(VT_DECIMAL, Form::Raw),
                             Scalar(VT_R4 | VT_BYREF, Form::RawText)};
    for (const Value& value : refused) EXPECT_THROW(RecordedVariant{value}, std::length_error) << value.type;
    Value inner = Scalar(VT_BSTR, Form::Variant);
    inner.inner.push_back(Scalar(VT_I4, Form::Integer));
    EXPECT_THROW(RecordedVariant{inner}, std::length_error);
    Value scalarWithArray = OfArray(VT_R8, 8, 1);
    scalarWithArray.type = VT_BSTR;
    EXPECT_THROW(RecordedVariant{scalarWithArray}, std::length_error);
}

TEST(RecordedVariants, RefuseArraysWhoseElementsAreOthers)
{
    Value addresses = OfArray(VT_BSTR, sizeof(BSTR), 1);
    addresses.array.front().numbers = {kSixteenBytes, sizeof(BSTR)};
    EXPECT_THROW(RecordedVariant{addresses}, std::length_error);
    Value mixed = OfArray(VT_BSTR, sizeof(BSTR), 1);
    mixed.array.front().elements.push_back(Scalar(VT_I4, Form::Integer));
    EXPECT_THROW(RecordedVariant{mixed}, std::length_error);
    Value fewer = OfArray(VT_BSTR, sizeof(BSTR), 2);
    fewer.array.front().elements.push_back(Scalar(VT_BSTR, Form::Text));
    EXPECT_THROW(RecordedVariant{fewer}, std::length_error);
    Value numbers = OfArray(VT_R8, 8, 1);
    numbers.array.front().elements.push_back(Scalar(VT_R8, Form::Real));
    EXPECT_THROW(RecordedVariant{numbers}, std::length_error);
    Value large = OfArray(VT_R8, 8, 3);
    large.array.front().numbers = {kSixteenBytes, 16};
    EXPECT_THROW(RecordedVariant{large}, std::length_error);
}

TEST(RecordedVariants, SayWhatTheSystemCannotCopy)
{
    // The element size of the first array is wrong; the second has elements but no data.
    Value odd = OfArray(VT_BSTR, 1, 2);
    odd.array.front().numbers = {kSixteenBytes, 2};
    EXPECT_FALSE(RecordedVariant(odd).IsCopyable());
    EXPECT_FALSE(RecordedVariant(OfArray(VT_R8, 8, 2)).IsCopyable());
    EXPECT_TRUE(RecordedVariant(OfArray(VT_R8, 8, 0)).IsCopyable());
}

TEST(RecordedVariants, AreCopiedLikeAnyOther)
{
    Value texts = OfArray(VT_BSTR, sizeof(BSTR), 2);
    Value none;
    none.type = VT_BSTR;
    texts.array.front().elements.push_back(Scalar(VT_BSTR, Form::Text));
    texts.array.front().elements.push_back(std::move(none));
    const RecordedVariant made(texts);
    ASSERT_TRUE(made.IsCopyable());
    VARIANT copy;
    VariantInit(&copy);
    VARIANT source = made.Get();
    ASSERT_EQ(S_OK, VariantCopy(&copy, &source));
    const auto* elements = static_cast<const BSTR*>(copy.parray->pvData);
    EXPECT_STREQ(L"text", elements[0]);
    EXPECT_EQ(nullptr, elements[1]);
    VariantClear(&copy);
}

}  // namespace
}  // namespace zelt::test
