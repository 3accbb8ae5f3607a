#include <gtest/gtest.h>
#include <wrl/client.h>

#include <limits>

#include "samples/component/cape_failure.h"
#include "samples/component/parameter.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace {

using namespace zelt::sample;
using Microsoft::WRL::ComPtr;

template <class I>
ComPtr<I> Query(IUnknown* object)
{
    ComPtr<I> result;
    EXPECT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&result)));
    return result;
}

class SampleParameterTest : public testing::Test {
protected:
    ComPtr<IDispatch> Item(const wchar_t* name)
    {
        ComPtr<IDispatch> item;
        EXPECT_EQ(S_OK, Query<ICapeCollection>(set.Collection(L"All").Get())->Item(_variant_t(name), &item));
        return item;
    }

    ComPtr<ICapeParameter> Parameter(const wchar_t* name) { return Query<ICapeParameter>(Item(name).Get()); }

    template <class I>
    ComPtr<I> Specification(const wchar_t* name)
    {
        ComPtr<IDispatch> specification;
        EXPECT_EQ(S_OK, Parameter(name)->get_Specification(&specification));
        return Query<I>(specification.Get());
    }

    ParameterSet set{{
        {L"Length", L"a real", RealSpecification{2, 1, 4, {1, 0, 0, 0, 0, 0, 0, 0}}},
        {L"Count", L"an integer", IntegerSpecification{3, 0, 5}},
        {L"Way", L"an option", OptionSpecification{L"up", {L"up", L"down"}, true}},
        {L"Free", L"an option with others", OptionSpecification{L"x", {L"x"}, false}},
        {L"Switch", L"a boolean", BooleanSpecification{true}},
        {L"Pair", L"an array", ArraySpecification{{{1, 0, 2, {}}, {10, 5, 20, {}}}}},
    }};
};

TEST_F(SampleParameterTest, AreFoundByNumberFromOneAndByName)
{
    const auto collection = Query<ICapeCollection>(set.Collection(L"All").Get());
    long count = 0;
    EXPECT_EQ(S_OK, collection->Count(&count));
    EXPECT_EQ(6, count);
    ComPtr<IDispatch> first, named, missing;
    EXPECT_EQ(S_OK, collection->Item(_variant_t(1L), &first));
    EXPECT_EQ(S_OK, collection->Item(_variant_t(L"length"), &named));
    EXPECT_EQ(first.Get(), named.Get());
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), collection->Item(_variant_t(0L), &missing));
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), collection->Item(_variant_t(7L), &missing));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), collection->Item(_variant_t(L"Width"), &missing));
    EXPECT_EQ(nullptr, missing.Get());
}

TEST_F(SampleParameterTest, OfferTheTypedInterfaceOfTheirTypeAlone)
{
    const struct {
        const wchar_t* name;
        eCapeParamType type;
        const IID& iid;
    } rows[] = {
        {L"Length", CAPE_REAL, __uuidof(ICapeRealParameterSpec)},
        {L"Count", CAPE_INT, __uuidof(ICapeIntegerParameterSpec)},
        {L"Way", CAPE_OPTION, __uuidof(ICapeOptionParameterSpec)},
        {L"Switch", CAPE_BOOLEAN, __uuidof(ICapeBooleanParameterSpec)},
        {L"Pair", CAPE_ARRAY, __uuidof(ICapeArrayParameterSpec)},
    };
    for (const auto& row : rows) {
        const auto spec = Specification<ICapeParameterSpec>(row.name);
        eCapeParamType type = CAPE_REAL;
        EXPECT_EQ(S_OK, spec->get_Type(&type));
        EXPECT_EQ(row.type, type) << row.name;
        for (const auto& other : rows) {
            ComPtr<IUnknown> typed;
            const HRESULT expected = &row == &other ? S_OK : E_NOINTERFACE;
            EXPECT_EQ(expected, spec->QueryInterface(other.iid, reinterpret_cast<void**>(typed.GetAddressOf())))
                << row.name << " as " << other.name;
        }
    }
    _variant_t dimensionality;
    EXPECT_EQ(S_OK, Specification<ICapeParameterSpec>(L"Length")->get_Dimensionality(&dimensionality));
    EXPECT_EQ((std::vector<double>{1, 0, 0, 0, 0, 0, 0, 0}), ReadDoubles(dimensionality, L"dim"));
}

// Values to set, whether the parameter accepts them, and what Validate says about them.
TEST_F(SampleParameterTest, TakeEveryValueOfTheirTypeAndJudgeItWhenAsked)
{
    const struct {
        const wchar_t* name;
        _variant_t value;
        HRESULT taken;
        const wchar_t* objection;
    } rows[] = {
        {L"Length", _variant_t(4.0), S_OK, L""},
        {L"Length", _variant_t(4L), S_OK, L""},
        {L"Length", _variant_t(4.5), S_OK, L"4.5 is not between 1 and 4"},
        {L"Length", _variant_t(std::numeric_limits<double>::quiet_NaN()), S_OK, L"nan is not between 1 and 4"},
        {L"Length", _variant_t(L"long"), static_cast<HRESULT>(ECapeInvalidArgumentHR), L""},
        {L"Count", _variant_t(5L), S_OK, L""},
        {L"Count", _variant_t(-1L), S_OK, L"-1 is not between 0 and 5"},
        {L"Way", _variant_t(L"DOWN"), S_OK, L""},
        {L"Way", _variant_t(L"left"), S_OK, L"\"left\" is not one of the options"},
        {L"Free", _variant_t(L"left"), S_OK, L""},
        {L"Switch", _variant_t(false), S_OK, L""},
        {L"Pair", MakeDoubles({{2.0, 5.0}}), S_OK, L""},
        {L"Pair", MakeDoubles({{2.0, 4.0}}), S_OK, L"value 2: 4 is not between 5 and 20"},
        {L"Pair", MakeDoubles({{2.0}}), S_OK, L"2 values are needed, not 1"},
        {L"Pair", _variant_t(1.0), static_cast<HRESULT>(ECapeInvalidArgumentHR), L""},
    };
    for (const auto& row : rows) {
        const auto parameter = Parameter(row.name);
        EXPECT_EQ(S_OK, parameter->Reset());
        EXPECT_EQ(row.taken, parameter->put_value(row.value)) << row.name;
        eCapeValidationStatus status = CAPE_VALID;
        EXPECT_EQ(S_OK, parameter->get_ValStatus(&status));
        EXPECT_EQ(CAPE_NOT_VALIDATED, status);
        _bstr_t message;
        VARIANT_BOOL isOK = VARIANT_FALSE;
        EXPECT_EQ(S_OK, parameter->Validate(message.GetAddress(), &isOK));
        EXPECT_EQ(row.objection, std::wstring(TextOf(message.GetBSTR()))) << row.name;
        EXPECT_EQ(*row.objection ? VARIANT_FALSE : VARIANT_TRUE, isOK) << row.name;
        EXPECT_EQ(S_OK, parameter->get_ValStatus(&status));
        EXPECT_EQ(*row.objection ? CAPE_INVALID : CAPE_VALID, status) << row.name;
    }
}

TEST_F(SampleParameterTest, GiveTheirComponentTheValueUnlessItIsWrong)
{
    EXPECT_EQ(2, set.Real(L"Length"));
    EXPECT_EQ(3, set.Integer(L"Count"));
    EXPECT_EQ(L"up", set.Option(L"Way"));
    EXPECT_TRUE(set.Boolean(L"Switch"));
    EXPECT_EQ((std::vector<double>{1, 10}), set.Array(L"Pair"));
    const auto length = Parameter(L"Length");
    EXPECT_EQ(S_OK, length->put_value(_variant_t(3.5)));
    EXPECT_EQ(3.5, set.Real(L"Length"));
    EXPECT_EQ(S_OK, length->put_value(_variant_t(5.0)));
    try {
        set.Real(L"Length");
        ADD_FAILURE() << "A value outside the bounds was given";
    } catch (const CapeFailure& failure) {
        EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR), failure.code);
        EXPECT_EQ(L"Parameter \"Length\": 5 is not between 1 and 4", failure.description);
    }
    EXPECT_EQ(S_OK, length->Reset());
    EXPECT_EQ(2, set.Real(L"Length"));
}

TEST_F(SampleParameterTest, KeepTheirMode)
{
    const auto parameter = Parameter(L"Count");
    eCapeParamMode mode = CAPE_OUTPUT;
    EXPECT_EQ(S_OK, parameter->get_Mode(&mode));
    EXPECT_EQ(CAPE_INPUT, mode);
    EXPECT_EQ(S_OK, parameter->put_Mode(CAPE_INPUT_OUTPUT));
    EXPECT_EQ(S_OK, parameter->get_Mode(&mode));
    EXPECT_EQ(CAPE_INPUT_OUTPUT, mode);
    EXPECT_EQ(static_cast<HRESULT>(ECapeOutOfBoundsHR), parameter->put_Mode(static_cast<eCapeParamMode>(3)));
}

TEST_F(SampleParameterTest, DescribeAListItemByItem)
{
    const auto spec = Specification<ICapeArrayParameterSpec>(L"Pair");
    long dimensions = 0;
    _variant_t size, specs, messages, verdicts;
    EXPECT_EQ(S_OK, spec->get_NumDimensions(&dimensions));
    EXPECT_EQ(1, dimensions);
    EXPECT_EQ(S_OK, spec->get_Size(&size));
    EXPECT_EQ(std::vector<long>{2}, ReadLongs(size, L"Size"));
    ASSERT_EQ(S_OK, spec->get_ItemsSpecifications(&specs));
    EXPECT_EQ(VT_ARRAY | VT_DISPATCH, V_VT(&specs));
    const auto items = ReadInterfaces(specs, L"specs");
    ASSERT_EQ(2u, items.size());
    double upper = 0;
    EXPECT_EQ(S_OK, Query<ICapeRealParameterSpec>(items[1].Get())->get_UpperBound(&upper));
    EXPECT_EQ(20, upper);

    // An existing message is replaced.
    messages = _variant_t(L"old");
    ASSERT_EQ(S_OK, spec->Validate(MakeDoubles({{3.0, 6.0}}), &messages, &verdicts));
    EXPECT_EQ((std::vector<std::wstring>{L"3 is not between 0 and 2", L""}), ReadStrings(messages, L"message"));
    EXPECT_EQ((std::vector<bool>{false, true}), ReadBooleans(verdicts, L"isOK"));
}

TEST(SampleParameterLife, OutlivesTheComponent)
{
    ComPtr<IDispatch> collection;
    {
        const ParameterSet set({{L"Length", L"", RealSpecification{2, 1, 4, {}}}});
        collection = set.Collection(L"All");
    }
    ComPtr<IDispatch> item;
    ASSERT_EQ(S_OK, Query<ICapeCollection>(collection.Get())->Item(_variant_t(1L), &item));
    _variant_t value;
    EXPECT_EQ(S_OK, Query<ICapeParameter>(item.Get())->get_value(&value));
    EXPECT_EQ(2.0, static_cast<double>(value));
}

}  // namespace
