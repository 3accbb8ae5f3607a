// marshalling_server <reference file> <method table>: hands out logged proxies by class name. Each proxy wraps an object that
// checks the arguments, returns samples, and fails a call with wrong arguments. The server runs until another process ends it.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <vector>

#include "com/dispatch.h"
#include "log/log_document.h"
#include "log/log_options.h"
#include "system/narrow.h"
#include "dynamic_fake.h"
#include "library_rows.h"
#include "method_table.h"
#include "proxy_classes.h"
#include "sample_values.h"
#include "tests/system/marshalling/named_object.h"
#include "thermo/wrapping_table.h"

namespace zelt::test {
namespace {

constexpr auto kArgumentsDiffer = static_cast<HRESULT>(ECapeInvalidArgumentHR);

// Returns proxies by class name through ICapeCollection, so that clients need no interface of the test's own.
class Proxies final : public com::Object {
public:
    // The name of each log is `logStem`, a number, and ".zlg".
    Proxies(const std::string& tablePath, std::wstring logStem)
        : table(ReadMethodTable(tablePath)), logStem(std::move(logStem))
    {
        table.push_back(LibraryClass(table));
        options.promptOpenLog = false;
        owner = FindProxyClass("CPropertyPackage11").make(ThermoVersion::Unset);
        owner->AttachAsRoot(nullptr, NewDocument(), "Owner");
    }

    IUnknown* Collection() { return &collection; }

private:
    // Every root closes its document, so each has its own. The documents are never deleted.
    LogDocument* NewDocument()
    {
        const std::wstring path = logStem + std::to_wstring(++logs) + L".zlg";
        LogFile file;
        if (file.Open(path) != 0) throw com::Failure(E_FAIL);
        auto* document = new LogDocument(std::move(file), "Root", "proxies", path, options);
        document->Hold();
        return document;
    }

    ComPtr<CapeOpenBase> Make(const std::string& name)
    {
        // The last class of the table is no proxy class. It has the members that every proxy offers and the table's file does
        // not contain, so any proxy will do.
        const ProxyClass& proxyClass = FindProxyClass(name == table.back().name ? "CPropertyPackage11" : name);
        const TableClass* tableClass = nullptr;
        for (const TableClass& known : table) {
            if (known.name == name) tableClass = &known;
        }
        if (!tableClass) throw com::Failure(E_INVALIDARG);
        const ComPtr<DynamicFake> wrapped = DynamicFake::Make(L"wrapped");
        wrapped->handler = [this, tableClass](const IncomingCall& call) { return Answer(*tableClass, call); };
        ComPtr<CapeOpenBase> proxy = proxyClass.make(ThermoVersion::Unset);
        LogDocument* document = proxyClass.origin == Origin::Root ? NewDocument() : nullptr;
        Attach(proxyClass, *proxy.Get(), wrapped.Get(), document, owner.Get());
        return proxy;
    }

    HRESULT Answer(const TableClass& tableClass, const IncomingCall& call)
    {
        for (const TableRow& row : tableClass.rows) {
            if (row.interfaceName != call.shape.name || row.method != call.method.name) continue;
            const auto steps = row.Arguments();
            for (std::size_t i = 0; i < steps.size(); ++i) {
                if (call.method.parameters[i].isOut) continue;
                if (IsAsSent(*steps[i], i, call)) continue;
                std::printf("%s, %s: %s differs\n", tableClass.name.c_str(), row.Key().c_str(), steps[i]->name.c_str());
                std::fflush(stdout);
                return kArgumentsDiffer;
            }
            for (std::size_t i = 0; i < steps.size(); ++i) {
                const ParameterShape& parameter = call.method.parameters[i];
                if (!parameter.isOut) continue;
                const ComPtr<IDispatch> object = thing->Face(__uuidof(ICapeIdentification));
                StoreValue(*static_cast<void**>(call.arguments[i]), parameter.type,
                           SampleValue(*steps[i], i, Filling::Samples, object.Get()));
            }
            return S_OK;
        }
        return E_NOTIMPL;
    }
    static bool IsAsSent(const TableStep& step, std::size_t index, const IncomingCall& call)
    {
        const ParameterShape& parameter = call.method.parameters[index];
        const void* place = call.arguments[index];
        if (parameter.isReference) place = *static_cast<void* const*>(place);
        return place && IsSample(step, index, LoadValue(place, parameter.type), kClientThing);
    }

    struct Collection final : com::DualPart<ICapeCollection> {
        explicit Collection(Proxies& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(Item)(VARIANT id, IDispatch** item) override
        {
            *item = nullptr;
            if (id.vt != VT_BSTR) return E_INVALIDARG;
            return com::NoThrow(
                [&] { return owner.Make(Narrow(TextOf(id.bstrVal)))->QueryInterface(IID_PPV_ARGS(item)); });
        }
        STDMETHOD(Count)(long* count) override
        {
            *count = static_cast<long>(owner.table.size());
            return S_OK;
        }
        Proxies& owner;
    } collection{*this};

    std::vector<TableClass> table;
    std::wstring logStem;
    int logs = 0;
    LogOptions options;
    ComPtr<CapeOpenBase> owner;
    ComPtr<DynamicFake> thing = DynamicFake::Make(kServerThing);
};

int Serve(const wchar_t* referencePath, const wchar_t* tablePath)
{
    InstallWrappers();
    const ComPtr<Proxies> proxies(new Proxies(Narrow(tablePath), referencePath));
    const HRESULT written = WriteReference(referencePath, __uuidof(ICapeCollection), proxies->Collection());
    if (FAILED(written)) {
        std::printf("cannot hand out a reference: 0x%08lX\n", static_cast<unsigned long>(written));
        return 1;
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    return 0;
}

}  // namespace
}  // namespace zelt::test

int wmain(int count, wchar_t** arguments)
{
    if (count != 3 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    try {
        return zelt::test::Serve(arguments[1], arguments[2]);
    } catch (const com::Failure&) {
        std::printf("cannot open a log, or read the type libraries\n");
    } catch (const std::exception& problem) {
        std::printf("%s\n", problem.what());
    }
    return 1;
}
