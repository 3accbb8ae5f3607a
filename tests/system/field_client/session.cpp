#include "tests/system/field_client/session.h"

#include <cstdio>

#include "com/object.h"
#include "samples/component/text.h"
#include "samples/field/classes.h"
#include "samples/material/simulation_context.h"
#include "tests/system/harness/activation.h"

namespace zelt::test {
namespace {

class SilentContext final : public com::Object {
public:
    explicit SilentContext(const std::shared_ptr<sample::Flowsheet>& flowsheet) : diagnostic(*this, errors, flowsheet)
    {}

protected:
    IDispatch* ScriptInterface() override { return &diagnostic; }

private:
    sample::CapeErrors errors{*this, L"FieldClient.SilentContext"};
    sample::DiagnosticPart diagnostic;
};

std::wstring NumberText(double value)
{
    wchar_t text[40];
    std::swprintf(text, std::size(text), L"%.17g", value);
    return text;
}

std::wstring ListText(const VARIANT& value)
{
    std::wstring text;
    const VARTYPE element = V_VT(&value) & VT_TYPEMASK;
    if (element == VT_BSTR) {
        for (const std::wstring& item : sample::ReadStrings(value, L"value")) text += L" " + item;
    } else if (element == VT_BOOL) {
        for (const bool item : sample::ReadBooleans(value, L"value")) text += item ? L" yes" : L" no";
    } else if (element == VT_DISPATCH) {
        text = L" " + std::to_wstring(sample::ReadInterfaces(value, L"value").size()) + L" objects";
    } else {
        for (const double item : sample::ReadDoubles(value, L"value")) text += L" " + NumberText(item);
    }
    return text.empty() ? text : text.substr(1);
}

}  // namespace

void Print(const std::string& what, const std::wstring& value)
{
    std::printf("%s: %ls\n", what.c_str(), value.c_str());
    std::fflush(stdout);
}

void Print(const std::string& what, const VARIANT& value)
{
    if (V_VT(&value) & VT_ARRAY) return Print(what, ListText(value));
    if (V_VT(&value) == VT_R8) return Print(what, NumberText(V_R8(&value)));
    Print(what, std::wstring(static_cast<const wchar_t*>(_bstr_t(_variant_t(value)))));
}

void Print(const std::string& what, HRESULT result, IUnknown* source)
{
    wchar_t code[20];
    std::swprintf(code, std::size(code), L"0x%08lX", static_cast<unsigned long>(result));
    Print(what,
          FAILED(result) && source ? code + (L", " + sample::DescribeFailure(source, result)) : std::wstring(code));
}

void Step(const wchar_t* what, HRESULT result, IUnknown* source) { sample::CheckCall(result, source, what); }

ComPtr<IUnknown> CreateServed(const wchar_t* progId)
{
    CLSID classId;
    Step(progId, CLSIDFromProgID(progId, &classId));
    ComPtr<IUnknown> object;
    Step(progId, CreateServed(classId, IID_PPV_ARGS(&object)));
    return object;
}

ComPtr<IDispatch> CreateInProcess(REFCLSID classId)
{
    ComPtr<IDispatch> object;
    Step(L"In process", CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)));
    return object;
}

bool IsSame(IUnknown* a, IUnknown* b)
{
    ComPtr<IUnknown> first, second;
    return a && b && SUCCEEDED(a->QueryInterface(IID_PPV_ARGS(&first))) &&
           SUCCEEDED(b->QueryInterface(IID_PPV_ARGS(&second))) && first.Get() == second.Get();
}

std::shared_ptr<sample::Flowsheet> MakeFlowsheet()
{
    auto flowsheet = std::make_shared<sample::Flowsheet>();
    flowsheet->onMessage = [](const wchar_t*, const std::wstring& text) { Print("message", text); };
    return flowsheet;
}

ComPtr<IDispatch> MakeContext(const std::shared_ptr<sample::Flowsheet>& flowsheet)
{
    ComPtr<IDispatch> context;
    com::Check(com::Create<sample::SimulationContext>(IID_PPV_ARGS(&context), flowsheet));
    return context;
}

ComPtr<IDispatch> MakeSilentContext(const std::shared_ptr<sample::Flowsheet>& flowsheet)
{
    ComPtr<IDispatch> context;
    com::Check(com::Create<SilentContext>(IID_PPV_ARGS(&context), flowsheet));
    return context;
}

}  // namespace zelt::test
