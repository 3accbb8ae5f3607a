// Calls of members that no interface has are replayed, and answered from a recording, like any others.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "late_binding.h"
#include "log/recording/recorded_component.h"
#include "proxy_fixture.h"
#include "recording/record_reader.h"
#include "replay/error_text.h"
#include "replay/late_calls.h"
#include "replay/recorded_package.h"
#include "replay/session.h"

namespace zelt::test {
namespace {

constexpr HRESULT kFaded = static_cast<HRESULT>(ECapeComputationHR);

// An object with members that no library describes; a script finds those of ICapeIdentification first.
class OwnMembers : public com::Object {
protected:
    virtual std::vector<const wchar_t*> Names() const = 0;
    virtual HRESULT Use(const std::wstring& name, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                        EXCEPINFO* exception) = 0;

    IDispatch* ScriptInterface() override { return &identification; }
    HRESULT FindMember(LPOLESTR* names, UINT, LCID, DISPID* ids) override
    {
        for (const wchar_t* const own : Names()) {
            if (com::IsSameMemberName(own, names[0])) ids[0] = 77;
        }
        return ids[0] == 77 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT InvokeMember(const com::LateMember& member, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT*) override
    {
        return Use(member.name, flags, *parameters, result, exception);
    }

private:
    FixedIdentification identification{*this, L"Own"};
};

// A material of the simulator, which has a member of its own.
class Shaded final : public OwnMembers {
public:
    explicit Shaded(double shade) : shade(shade) {}

    int asked = 0;

protected:
    std::vector<const wchar_t*> Names() const override { return {L"Shade"}; }
    HRESULT Use(const std::wstring&, WORD, DISPPARAMS& parameters, VARIANT* result, EXCEPINFO*) override
    {
        ++asked;
        if (parameters.cArgs == 1) *parameters.rgvarg[0].pdblVal = shade / 2;
        if (result) V_VT(result) = VT_R8;
        if (result) V_R8(result) = shade;
        return S_OK;
    }

private:
    const double shade;
};

// A package whose colours are the sum of its own, its material's shade and an index.
class Painter final : public OwnMembers {
public:
    explicit Painter(double error = 0) : context(*this), error(error) {}

protected:
    std::vector<const wchar_t*> Names() const override { return {L"Colour", L"Double", L"Fade"}; }
    HRESULT Use(const std::wstring& name, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                EXCEPINFO* exception) override
    {
        if (name == L"Fade") {
            exception->scode = kFaded;
            exception->bstrDescription = SysAllocString(L"no colour left");
            return DISP_E_EXCEPTION;
        }
        if (name == L"Double") {
            VARIANT& reference = parameters.rgvarg[0];
            if (reference.vt == (VT_BYREF | VT_R8)) *reference.pdblVal *= 2;
            if (reference.vt == (VT_BYREF | VT_VARIANT)) *reference.pvarVal = _variant_t(7.0);
            return S_OK;
        }
        if (flags & DISPATCH_PROPERTYPUT) {
            colour = parameters.rgvarg[0].dblVal;
            return S_OK;
        }
        V_VT(result) = VT_R8;
        V_R8(result) = colour + shade + error + parameters.rgvarg[0].lVal;
        return S_OK;
    }

private:
    struct Context final : com::DualPart<ICapeThermoMaterialContext> {
        explicit Context(Painter& painter) : DualPart(painter), painter(painter) {}
        STDMETHOD(SetMaterial)(IDispatch* material) override { return painter.TakeShade(material); }
        STDMETHOD(UnsetMaterial)() override { return S_OK; }
        Painter& painter;
    };
    HRESULT TakeShade(IDispatch* material)
    {
        DISPID id = DISPID_UNKNOWN;
        if (FAILED(IdOf(material, L"Shade", id))) return S_FALSE;
        double half = 0;
        VARIANT place;
        V_VT(&place) = VT_BYREF | VT_R8;
        V_R8REF(&place) = &half;
        _variant_t whole;
        const HRESULT got = InvokeWith(material, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {place}, &whole);
        if (SUCCEEDED(got)) shade = half + static_cast<double>(whole);
        return got;
    }

    Context context;
    const double error;
    double colour = 0, shade = 0;
};

// What a simulator's script does with the package.
std::vector<double> Paint(IDispatch* script, ICapeThermoMaterialContext* context, IDispatch* material)
{
    EXPECT_EQ(S_OK, context->SetMaterial(material));
    std::vector<double> colours;
    DISPID colour = 0, twice = 0, fade = 0;
    EXPECT_EQ(S_OK, IdOf(script, L"Colour", colour));
    EXPECT_EQ(S_OK, IdOf(script, L"Double", twice));
    EXPECT_EQ(S_OK, IdOf(script, L"Fade", fade));
    _variant_t value;
    EXPECT_EQ(S_OK, InvokeWith(script, colour, DISPATCH_PROPERTYPUT, {_variant_t(40.0)}));
    EXPECT_EQ(S_OK, InvokeWith(script, colour, DISPATCH_PROPERTYGET, {_variant_t(2L)}, &value));
    colours.push_back(value);
    double number = 1.5;
    VARIANT reference;
    V_VT(&reference) = VT_BYREF | VT_R8;
    V_R8REF(&reference) = &number;
    EXPECT_EQ(S_OK, InvokeWith(script, twice, DISPATCH_METHOD, {reference}));
    colours.push_back(number);
    _variant_t empty;
    V_VT(&reference) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&reference) = &empty;
    EXPECT_EQ(S_OK, InvokeWith(script, twice, DISPATCH_METHOD, {reference}));
    colours.push_back(empty);
    EXCEPINFO exception = {};
    EXPECT_EQ(DISP_E_EXCEPTION, InvokeWith(script, fade, DISPATCH_METHOD, {}, nullptr, &exception));
    EXPECT_EQ(kFaded, exception.scode);
    SysFreeString(exception.bstrDescription);
    return colours;
}

class LateCalls : public ProxyFixture {
protected:
    void Record()
    {
        {
            const ComPtr<Painter> painter(new Painter);
            const ComPtr<CPropertyPackage11> proxy = MakeProxy(painter.Get());
            RecordComponent(document, {}, painter.Get());
            const ComPtr<Shaded> material(new Shaded(8));
            EXPECT_EQ(kPainted, Paint(As<IDispatch>(proxy).Get(), As<ICapeThermoMaterialContext>(proxy).Get(),
                                      As<IDispatch>(material).Get()));
        }
        Close();
    }
    // The differences that a replay to `painter` finds.
    std::string Replayed(Painter* painter)
    {
        const ComPtr<Painter> component(painter);
        FILE* const file = _wfopen(recording.c_str(), L"rb");
        recording::RecordReader records(
            [file](char* bytes, std::size_t count) { return std::fread(bytes, 1, count, file); });
        EXPECT_TRUE(records.Next());
        recording::CallTreeReader calls(records);
        std::string found;
        {
            replay::Session session(
                calls.Queries(), 0, 0,
                [&](const recording::KeptComponent&) {
                    component->AddRef();
                    return ForeignPtr<IUnknown>(component.Get());
                },
                [&](const replay::Finding& finding) {
                    found += std::string(finding.call.call.member) + ": " + finding.text + '\n';
                });
            bool isMade = false;
            while (const auto call = calls.Next()) {
                if (calls.Component() && !isMade) session.Use(*calls.Component());
                isMade = calls.Component().has_value();
                session.Perform(*call);
            }
            EXPECT_EQ(1u, session.Answered());
        }
        std::fclose(file);
        return found;
    }

    const std::vector<double> kPainted = {40 + 8 + 4 + 2, 3, 7};
};

TEST_F(LateCalls, AreMadeAgain)
{
    Record();
    EXPECT_EQ("", Replayed(new Painter));
    EXPECT_EQ("IDispatch::get_Colour: output \"result\": 54.5 instead of 54\n", Replayed(new Painter(0.5)));
}

TEST_F(LateCalls, AreAnsweredFromARecording)
{
    Record();
    replay::RecordedPackage recorded(recording);
    const ForeignPtr<IUnknown> package = recorded.Package();
    ComPtr<IDispatch> script;
    ASSERT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&script)));
    ComPtr<ICapeThermoMaterialContext> context;
    ASSERT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&context)));
    const ComPtr<Shaded> material(new Shaded(8));
    EXPECT_EQ(kPainted, Paint(script.Get(), context.Get(), As<IDispatch>(material).Get()));
    EXPECT_EQ(1, material->asked);

    // Other inputs have no answer.
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"COLOUR", id));
    _variant_t value;
    EXPECT_EQ(S_OK, InvokeWith(script.Get(), id, DISPATCH_PROPERTYGET, {_variant_t(2L)}, &value));
    EXCEPINFO exception = {};
    EXPECT_EQ(DISP_E_EXCEPTION,
              InvokeWith(script.Get(), id, DISPATCH_PROPERTYGET, {_variant_t(3L)}, &value, &exception));
    EXPECT_EQ(replay::kNoAnswer, exception.scode);
    EXPECT_STREQ(L"The recording has no answer to IDispatch::get_Colour", exception.bstrDescription);
    SysFreeString(exception.bstrDescription);
    EXPECT_EQ(DISP_E_UNKNOWNNAME, IdOf(script.Get(), L"Texture", id));

    // A simulator whose material answers differently.
    const ComPtr<Shaded> other(new Shaded(9));
    EXPECT_EQ(replay::kNoAnswer, context->SetMaterial(As<IDispatch>(other).Get()));
}

// A call with one argument, a reference of the type, for which the recording has `value`.
HRESULT GiveOutput(VARTYPE type, void* place, const _variant_t& value)
{
    VARIANT reference;
    V_VT(&reference) = VT_BYREF | type;
    V_BYREF(&reference) = place;
    DISPPARAMS parameters = {&reference, nullptr, 1, 0};
    replay::LateCall call({L"Member"}, DISPATCH_METHOD, &parameters, nullptr);
    EXPECT_EQ(2u, call.Method().parameters.size());
    VARIANT* const output = static_cast<VARIANT**>(call.Words())[1];
    EXPECT_EQ(S_OK, VariantCopy(output, const_cast<_variant_t*>(&value)));
    return call.GiveOutputs();
}

TEST(LateCall, GivesEachReferenceAValueOfItsType)
{
    double real = 0;
    EXPECT_EQ(S_OK, GiveOutput(VT_R8, &real, 1.5));
    EXPECT_EQ(1.5, real);
    long number = 0;
    EXPECT_EQ(S_OK, GiveOutput(VT_I4, &number, 2.0));
    EXPECT_EQ(2, number);
    BSTR text = SysAllocString(L"before");
    EXPECT_EQ(S_OK, GiveOutput(VT_BSTR, &text, L"after"));
    EXPECT_STREQ(L"after", text);
    SysFreeString(text);
    DECIMAL decimal = {};
    EXPECT_EQ(S_OK, GiveOutput(VT_DECIMAL, &decimal, 3.0));
    double converted = 0;
    EXPECT_EQ(S_OK, VarR8FromDec(&decimal, &converted));
    EXPECT_EQ(3.0, converted);

    _variant_t numbers;
    V_VT(&numbers) = VT_ARRAY | VT_R8;
    V_ARRAY(&numbers) = SafeArrayCreateVector(VT_R8, 0, 3);
    SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, 1);
    EXPECT_EQ(S_OK, GiveOutput(VT_ARRAY | VT_R8, &array, numbers));
    EXPECT_EQ(3u, array->rgsabound[0].cElements);
    SafeArrayDestroy(array);
    _variant_t variant(L"before");
    EXPECT_EQ(S_OK, GiveOutput(VT_VARIANT, &variant, numbers));
    EXPECT_EQ(VT_ARRAY | VT_R8, V_VT(&variant));

    EXPECT_EQ(DISP_E_TYPEMISMATCH, GiveOutput(VT_I4, &number, L"no number"));
    EXPECT_EQ(2, number);
}

}  // namespace
}  // namespace zelt::test
