#include "sample_fixture.h"

#include "samples/field/field_package.h"
#include "samples/field/field_unit.h"

// The field components, called directly. The tests that call them through ZELT rely on what is tested here.
namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// A material that has no interface but IDispatch.
class NameOnly final : public IDispatch {
public:
    explicit NameOnly(ComPtr<IDispatch> material) : material(std::move(material)) {}
    std::vector<std::wstring> members;  // the names that were asked for

    STDMETHOD(QueryInterface)(REFIID iid, void** result) override
    {
        *result = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
        *result = this;
        AddRef();
        return S_OK;
    }
    // The test owns this object.
    STDMETHOD_(ULONG, AddRef)() override { return 2; }
    STDMETHOD_(ULONG, Release)() override { return 1; }
    STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
    STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHOD(GetIDsOfNames)(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override
    {
        members.emplace_back(names[0]);
        return material->GetIDsOfNames(iid, names, count, locale, ids);
    }
    STDMETHOD(Invoke)(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* argument) override
    {
        return material->Invoke(member, iid, locale, flags, parameters, result, exception, argument);
    }

private:
    ComPtr<IDispatch> material;
};

class SampleFieldTest : public SampleTest {
protected:
    void SetUp() override
    {
        SetCompounds({L"Toluene", L"Benzene"});
        ASSERT_EQ(S_OK, com::Create<FieldPackage>(IID_PPV_ARGS(&package)));
    }
    ComPtr<ICapeThermoMaterialObject> Feed()
    {
        auto material = MakeMaterial<ICapeThermoMaterialObject>();
        Set(material, L"temperature", L"", {{363.15}});
        Set(material, L"pressure", L"", {{85000.0}});
        Set(material, L"fraction", L"mole", {{0.5, 0.5}});
        return material;
    }
    static void Set(const ComPtr<ICapeThermoMaterialObject>& material, const wchar_t* property, const wchar_t* basis,
                    std::span<const double> values)
    {
        EXPECT_EQ(S_OK, material->SetProp(B(property), B(L"Overall"), _variant_t(), B(L"Mixture"), B(basis),
                                          MakeDoubles(values)));
    }
    static std::vector<double> Enthalpy(const ComPtr<ICapeThermoMaterialObject>& material)
    {
        _variant_t values;
        EXPECT_EQ(S_OK,
                  material->GetProp(B(L"enthalpy"), B(L"Liquid"), _variant_t(), B(L"Mixture"), B(L"mole"), &values));
        return ReadDoubles(values, L"results");
    }

    ComPtr<IDispatch> package;
};

TEST_F(SampleFieldTest, AMaterialThatHasOnlyNamesGetsTheSameResults)
{
    ComPtr<ICapeThermoPropertyPackage> early;
    ASSERT_EQ(S_OK, com::Create<PropertyPackage10>(IID_PPV_ARGS(&early)));
    const auto expected = Feed(), material = Feed();
    ASSERT_EQ(S_OK, early->CalcEquilibrium(expected.Get(), B(L"TP"), MakeStrings({L"enthalpy"})));

    NameOnly named(Query<IDispatch>(material.Get()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidArgumentHR), early->CalcEquilibrium(&named, B(L"TP"), _variant_t()))
        << "this package needs the material's interface";
    EXPECT_TRUE(named.members.empty());
    const auto server = Query<ICapeThermoEquilibriumServer>(package.Get());
    ASSERT_EQ(S_OK, server->CalcEquilibrium(&named, B(L"TP"), MakeStrings({L"enthalpy"})))
        << Description(package.Get()).c_str();
    EXPECT_EQ(Enthalpy(expected), Enthalpy(material));
    EXPECT_EQ(L"SetProp", named.members.back());

    // From a material that has only names, the package gets the code of a failure, but not its description.
    const auto routine = Query<ICapeThermoCalculationRoutine>(package.Get());
    EXPECT_EQ(S_OK, material->RemoveResults(_variant_t()));
    EXPECT_EQ(static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
              routine->CalcProp(&named, MakeStrings({L"enthalpy"}), MakeStrings({L"Liquid"}), B(L"Mixture")));
}

TEST_F(SampleFieldTest, AContextIsKeptIfItSaysWhatItIs)
{
    // A material is not a context: the package accepts it, but sends it no messages.
    const auto utilities = Query<ICapeUtilities>(package.Get());
    EXPECT_EQ(S_OK, utilities->put_simulationContext(MakeMaterial<IDispatch>().Get()));
    EXPECT_EQ(nullptr, RecognisedContext(MakeMaterial<IDispatch>().Get()));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(S_OK, utilities->put_simulationContext(MakeContext().Get()));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(std::vector<std::wstring>{L"Aromatics: ready, hosted by SampleSimulator"}, messages);
    EXPECT_EQ(S_OK, utilities->Terminate());
}

TEST_F(SampleFieldTest, AParameterIsItsOwnSpecification)
{
    ComPtr<ICapeUnit> unit;
    ComPtr<IDispatch> object;
    ASSERT_EQ(S_OK, com::Create<FieldUnit>(IID_PPV_ARGS(&unit)));
    ASSERT_EQ(S_OK, Query<ICapeUtilities>(unit.Get())->get_parameters(&object));
    const auto parameters = Query<ICapeCollection>(object.Get());
    long count = 0;
    ASSERT_EQ(S_OK, parameters->Count(&count));
    std::vector<eCapeParamType> types;
    for (long number = 1; number <= count; ++number) {
        ComPtr<IDispatch> item, specification;
        ASSERT_EQ(S_OK, parameters->Item(_variant_t(number), &item));
        ASSERT_EQ(S_OK, Query<ICapeParameter>(item.Get())->get_Specification(&specification));
        EXPECT_EQ(item.Get(), specification.Get());
        eCapeParamType type{};
        EXPECT_EQ(S_OK, Query<ICapeParameterSpec>(item.Get())->get_Type(&type));
        types.push_back(type);
    }
    EXPECT_EQ((std::vector<eCapeParamType>{CAPE_REAL, CAPE_INT, CAPE_OPTION, CAPE_BOOLEAN, CAPE_ARRAY}), types);
    // The unit uses the value that was set through the parameter's object.
    EXPECT_EQ(S_OK, SetIn(object.Get(), L"Pressure drop", _variant_t(-1.0)));
    _bstr_t message;
    VARIANT_BOOL valid = VARIANT_TRUE;
    EXPECT_EQ(S_OK, unit->Validate(message.GetAddress(), &valid));
    EXPECT_EQ(VARIANT_FALSE, valid);
    EXPECT_STREQ(L"Parameter \"Pressure drop\": -1 is not between 0 and 1e+08", message.GetBSTR());
}

}  // namespace
}  // namespace zelt::sample
