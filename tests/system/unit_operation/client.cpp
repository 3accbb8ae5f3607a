// unit_client save|load <file> <ProgID>, or unit_client vendor <type library> <ProgID>: a simulator with one unit, the PRAVIK
// of that ProgID, which wraps a unit that this process serves itself. Saves the calculated unit to a file, or loads it from
// one, or uses the vendor's interface of a unit that has one. Prints a line per step; the exit code is 0 if all steps
// succeeded.
#include <windows.h>
#include <objbase.h>

#include <comutil.h>

#include <cstdio>
#include <cwchar>
#include <vector>

#include "com/class_factory.h"
#include "tests/system/harness/activation.h"
#include "tests/system/unit_operation/runs.h"
#include "tests/system/unit_operation/unit_server.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

void Step(const char* what, HRESULT result)
{
    std::printf("%s: 0x%08lX\n", what, static_cast<unsigned long>(result));
    com::Check(result);
}

bool IsSame(IUnknown* a, IUnknown* b)
{
    ComPtr<IUnknown> one, other;
    a->QueryInterface(IID_PPV_ARGS(&one));
    b->QueryInterface(IID_PPV_ARGS(&other));
    return one && one.Get() == other.Get();
}

ComPtr<IPersistStreamInit> CreatePravik(const wchar_t* progId)
{
    CLSID classId;
    ComPtr<IPersistStreamInit> unit;
    Step("class", CLSIDFromProgID(progId, &classId));
    Step("create", CreateServed(classId, IID_PPV_ARGS(&unit)));
    CLSID told{};
    Step("GetClassID", unit->GetClassID(&told));
    std::printf("tells its class: %s\n", told == classId ? "yes" : "no");
    return unit;
}

namespace {

void Calculate(IPersistStreamInit* persistence)
{
    ComPtr<ICapeUnit> unit;
    ComPtr<ICapeUtilities> utilities;
    Step("query", persistence->QueryInterface(IID_PPV_ARGS(&utilities)));
    Step("Initialize", utilities->Initialize());
    Step("query", persistence->QueryInterface(IID_PPV_ARGS(&unit)));
    ComPtr<IDispatch> ports, item, stream, found;
    ComPtr<ICapeCollection> collection;
    ComPtr<ICapeUnitPort> port;
    Step("get_ports", unit->get_ports(&ports));
    Step("query", ports.As(&collection));
    Step("Item", collection->Item(_variant_t(1L), &item));
    Step("query", item.As(&port));
    Step("stream", com::Create<Collection>(IID_IDispatch, reinterpret_cast<void**>(stream.GetAddressOf()), false, 42L));
    Step("Connect", port->Connect(stream.Get()));
    Step("get_connectedObject", port->get_connectedObject(&found));
    std::printf("own object back: %s\n", found && IsSame(stream.Get(), found.Get()) ? "yes" : "no");
    std::printf("unit has it: %s\n", IsSame(stream.Get(), unitState.connected.Get()) ? "directly" : "wrapped");
    Step("Calculate", unit->Calculate());
    std::printf("state: %s\n", unitState.state.c_str());
    Step("Disconnect", port->Disconnect());
}

void Save(const wchar_t* path, const wchar_t* progId)
{
    const auto pravik = CreatePravik(progId);
    Step("InitNew", pravik->InitNew());
    Calculate(pravik.Get());
    std::printf("IsDirty: 0x%08lX\n", static_cast<unsigned long>(pravik->IsDirty()));
    ULARGE_INTEGER most{};
    Step("GetSizeMax", pravik->GetSizeMax(&most));
    std::printf("size: %lu\n", most.LowPart);
    ComPtr<IStream> stream;
    Step("stream", CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    Step("Save", pravik->Save(stream.Get(), TRUE));

    STATSTG status;
    Step("Stat", stream->Stat(&status, STATFLAG_NONAME));
    std::vector<char> bytes(status.cbSize.LowPart);
    LARGE_INTEGER start{};
    Step("Seek", stream->Seek(start, STREAM_SEEK_SET, nullptr));
    Step("Read", stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    FILE* file = _wfopen(path, L"wb");
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) throw com::Failure(E_FAIL);
    std::fclose(file);
}

void Load(const wchar_t* path, const wchar_t* progId)
{
    FILE* file = _wfopen(path, L"rb");
    if (!file) throw com::Failure(E_FAIL);
    char bytes[1024];
    const auto length = static_cast<ULONG>(std::fread(bytes, 1, sizeof bytes, file));
    std::fclose(file);
    ComPtr<IStream> stream;
    Step("stream", CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    Step("Write", stream->Write(bytes, length, nullptr));
    LARGE_INTEGER start{};
    Step("Seek", stream->Seek(start, STREAM_SEEK_SET, nullptr));
    const auto pravik = CreatePravik(progId);
    Step("Load", pravik->Load(stream.Get()));
    std::printf("state: %s\n", unitState.state.c_str());
    ComPtr<ICapeUnit> unit;
    Step("query", pravik.As(&unit));
    eCapeValidationStatus status = CAPE_NOT_VALIDATED;
    Step("get_ValStatus", unit->get_ValStatus(&status));
    std::printf("valid: %s\n", status == CAPE_VALID ? "yes" : "no");
}

int Run(const wchar_t* what, const wchar_t* path, const wchar_t* progId)
{
    const bool isVendors = std::wcscmp(what, L"vendor") == 0;
    const com::ClassEntry served[] = {{kServedUnit, isVendors ? CreateVendorUnit : com::CreateDefault<ServedUnit>}};
    com::ClassObjects classes(CLSCTX_LOCAL_SERVER);
    const HRESULT result = com::NoThrow([&] {
        Step("serve", classes.Register(served));
        if (isVendors) {
            UseVendorInterface(path, progId);
        } else {
            std::wcscmp(what, L"save") == 0 ? Save(path, progId) : Load(path, progId);
        }
        return S_OK;
    });
    unitState = {};
    return FAILED(result) ? 1 : 0;
}

}  // namespace
}  // namespace zelt::test

int wmain(int count, wchar_t** arguments)
{
    if (count != 4 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int result = zelt::test::Run(arguments[1], arguments[2], arguments[3]);
    CoUninitialize();
    return result;
}
