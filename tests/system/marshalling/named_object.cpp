#include "tests/system/marshalling/named_object.h"

#include <cape-open.h>
#include <comutil.h>
#include <objbase.h>
#include <wrl/client.h>

#include "sample_values.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

bool HasName(IUnknown* object, const wchar_t* name)
{
    ComPtr<ICapeIdentification> identification;
    _bstr_t found;
    return object && SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&identification))) &&
           SUCCEEDED(identification->get_ComponentName(found.GetAddress())) && found.length() > 0 &&
           wcscmp(found, name) == 0;
}

bool IsSample(const TableStep& argument, std::size_t index, const VARIANT& value, const wchar_t* objectName)
{
    if (value.vt == VT_DISPATCH) return argument.type == "interface" && HasName(value.pdispVal, objectName);
    if (argument.type != "objects") {
        return IsSameValue(SampleValue(argument, index, Filling::Samples, nullptr), value);
    }
    if (value.vt != (VT_ARRAY | VT_DISPATCH) || SafeArrayGetDim(value.parray) != 1) return false;
    const _variant_t sample = SampleValue(argument, index, Filling::Samples, nullptr);
    LONG bounds[4] = {};
    SafeArrayGetLBound(sample.parray, 1, &bounds[0]);
    SafeArrayGetLBound(value.parray, 1, &bounds[1]);
    SafeArrayGetUBound(sample.parray, 1, &bounds[2]);
    SafeArrayGetUBound(value.parray, 1, &bounds[3]);
    if (bounds[0] != bounds[1] || bounds[2] != bounds[3]) return false;
    for (LONG at = bounds[1]; at <= bounds[3]; ++at) {
        ComPtr<IDispatch> element;
        if (FAILED(SafeArrayGetElement(value.parray, &at, element.GetAddressOf()))) return false;
        if (!HasName(element.Get(), objectName)) return false;
    }
    return true;
}

HRESULT WriteReference(const std::wstring& path, REFIID iid, IUnknown* object)
{
    ComPtr<IStream> stream;
    HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    if (FAILED(result)) return result;
    result = CoMarshalInterface(stream.Get(), iid, object, MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG);
    if (FAILED(result)) return result;
    HGLOBAL memory = nullptr;
    result = GetHGlobalFromStream(stream.Get(), &memory);
    if (FAILED(result)) return result;
    STATSTG size;
    result = stream->Stat(&size, STATFLAG_NONAME);
    if (FAILED(result)) return result;

    const std::wstring whole = path + L".part";
    FILE* file = _wfopen(whole.c_str(), L"wb");
    if (!file) return E_FAIL;
    const std::size_t length = size.cbSize.LowPart;
    const bool isWritten = fwrite(GlobalLock(memory), 1, length, file) == length;
    GlobalUnlock(memory);
    fclose(file);
    return isWritten && MoveFileExW(whole.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) ? S_OK : E_FAIL;
}

HRESULT ReadReference(const std::wstring& path, REFIID iid, void** object)
{
    FILE* file = _wfopen(path.c_str(), L"rb");
    if (!file) return E_FAIL;
    char bytes[4096];
    const std::size_t length = fread(bytes, 1, sizeof bytes, file);
    fclose(file);
    ComPtr<IStream> stream;
    HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    if (FAILED(result)) return result;
    result = stream->Write(bytes, static_cast<ULONG>(length), nullptr);
    if (FAILED(result)) return result;
    result = stream->Seek({}, STREAM_SEEK_SET, nullptr);
    return FAILED(result) ? result : CoUnmarshalInterface(stream.Get(), iid, object);
}

}  // namespace zelt::test
