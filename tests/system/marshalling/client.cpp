// marshalling_client <reference file> <method table>: calls every method in the table, and every member of the other
// interfaces that proxies offer. Makes each call twice, through the vtable and through the interface's IDispatch, and checks
// the results. Prints what failed and the number of calls; the exit code is 0 if everything succeeded.
#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <exception>

#include <cape-open.h>

#include "com/failure.h"
#include "system/narrow.h"
#include "dynamic_fake.h"
#include "library_rows.h"
#include "method_call.h"
#include "tests/system/marshalling/named_object.h"

namespace zelt::test {
namespace {

class Client {
public:
    int failures = 0;
    int interfaces = 0, early = 0, late = 0;

    void CallClass(const TableClass& tableClass, IDispatch* proxy)
    {
        ComPtr<IDispatch> pointer;
        std::string interfaceName;
        for (const TableRow& row : tableClass.rows) {
            where = tableClass.name + ", " + row.Key();
            const InterfaceShape* shape = ShapeNamed(row.interfaceName);
            if (!shape) {
                Fail("no such interface", E_NOINTERFACE);
                continue;
            }
            if (row.interfaceName != interfaceName) {
                interfaceName = row.interfaceName;
                const HRESULT queried =
                    proxy->QueryInterface(shape->iid, reinterpret_cast<void**>(pointer.ReleaseAndGetAddressOf()));
                if (FAILED(queried)) Fail("query", queried);
                ++interfaces;
            }
            if (row.method.empty() || !pointer) continue;
            for (const MethodShape& method : shape->methods) {
                if (method.name == row.method) CallMethod(method, row, pointer.Get());
            }
        }
    }

private:
    void CallMethod(const MethodShape& method, const TableRow& row, IDispatch* pointer)
    {
        const ComPtr<IDispatch> object = thing->Face(__uuidof(ICapeIdentification));
        for (const bool isLate : {false, true}) {
            MethodCall call(method, row, Filling::Samples, object.Get());
            const HRESULT result = isLate ? call.CallLate(pointer) : call.CallEarly(pointer);
            const char* how = isLate ? "late-bound" : "early-bound";
            ++(isLate ? late : early);
            if (result != S_OK) {
                Fail(how, result);
                continue;
            }
            const auto steps = row.Arguments();
            for (std::size_t i = 0; i < steps.size(); ++i) {
                if (!method.parameters[i].isOut || IsSample(*steps[i], i, call.Value(i), kServerThing)) continue;
                Fail((std::string(how) + ", " + steps[i]->name + " came back").c_str(), S_FALSE);
            }
        }
    }
    void Fail(const char* what, HRESULT result)
    {
        ++failures;
        std::printf("%s: %s: 0x%08lX\n", where.c_str(), what, static_cast<unsigned long>(result));
    }

    std::string where;
    ComPtr<DynamicFake> thing = DynamicFake::Make(kClientThing);
};

int CallAll(const wchar_t* referencePath, const wchar_t* tablePath)
{
    ComPtr<ICapeCollection> proxies;
    const HRESULT read = ReadReference(referencePath, IID_PPV_ARGS(&proxies));
    if (FAILED(read)) {
        std::printf("cannot reach the server: 0x%08lX\n", static_cast<unsigned long>(read));
        return 1;
    }
    Client client;
    int classes = 0;
    std::vector<TableClass> table = ReadMethodTable(Narrow(tablePath));
    table.push_back(LibraryClass(table));
    for (const TableClass& tableClass : table) {
        ComPtr<IDispatch> proxy;
        const HRESULT made = proxies->Item(_variant_t(Widen(tableClass.name).c_str()), &proxy);
        if (FAILED(made) || !proxy) {
            std::printf("%s: 0x%08lX\n", tableClass.name.c_str(), static_cast<unsigned long>(made));
            ++client.failures;
            continue;
        }
        ++classes;
        client.CallClass(tableClass, proxy.Get());
    }
    std::printf(
        "a %d-bit client called %d methods early-bound and %d late-bound, of %d interfaces of %d classes; %d failed\n",
        static_cast<int>(8 * sizeof(void*)), client.early, client.late, client.interfaces, classes, client.failures);
    return client.failures == 0 && classes > 0 ? 0 : 1;
}

}  // namespace
}  // namespace zelt::test

int wmain(int count, wchar_t** arguments)
{
    if (count != 3 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    int result = 1;
    try {
        result = zelt::test::CallAll(arguments[1], arguments[2]);
    } catch (const com::Failure&) {
        std::printf("type information cannot be read\n");
    } catch (const std::exception& problem) {
        std::printf("%s\n", problem.what());
    }
    CoUninitialize();
    return result;
}
