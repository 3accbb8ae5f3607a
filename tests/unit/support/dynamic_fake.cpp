#include "dynamic_fake.h"

#include <cape-open.h>
#include <zelt.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "com/dispatch.h"
#include "com/failure.h"

namespace zelt::test {

// What an interface pointer of the object points to: the first member is the vtable pointer that every caller expects.
struct DynamicFake::Interface {
    const void* const* vtable;
    DynamicFake* owner;
    const InterfaceShape* shape;
};

namespace {

// Pages for code that is made at run time. They are never freed.
class CodePages {
public:
    // Room for one piece of code, with a margin.
    unsigned char* Next()
    {
        if (left < kPiece) {
            page = static_cast<unsigned char*>(
                VirtualAlloc(nullptr, kPage, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
            if (!page) throw com::Failure(E_OUTOFMEMORY);
            left = kPage;
        }
        unsigned char* piece = page;
        page += kPiece;
        left -= kPiece;
        return piece;
    }

    static constexpr std::size_t kPiece = 96;

private:
    static constexpr std::size_t kPage = 65536;
    unsigned char* page = nullptr;
    std::size_t left = 0;
};

class CodeWriter {
public:
    explicit CodeWriter(unsigned char* start) : next(start) {}
    CodeWriter& Bytes(std::initializer_list<int> bytes)
    {
        for (const int byte : bytes) *next++ = static_cast<unsigned char>(byte);
        return *this;
    }
    template <class T>
    CodeWriter& Value(T value)
    {
        std::memcpy(next, &value, sizeof value);
        next += sizeof value;
        return *this;
    }
    unsigned char* Next() const { return next; }

private:
    unsigned char* next;
};

struct Slot {
    const InterfaceShape* shape;
    const MethodShape* method;
};

using Enter = HRESULT(__cdecl*)(const Slot* slot, std::byte* arguments);

template <class T>
std::uintptr_t Address(T* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

#ifdef __i386__
// All arguments are on the stack, and the callee removes them.
void WriteSlotCode(unsigned char* code, const Slot* slot, Enter enter)
{
    std::size_t size = sizeof(void*);
    for (const ParameterShape& parameter : slot->method->parameters) size += std::max<std::size_t>(parameter.Size(), 4);
    // clang-format off
    CodeWriter(code)
        .Bytes({0x8D, 0x44, 0x24, 0x04})                 // lea eax, [esp+4]
        .Bytes({0x50})                                   // push eax
        .Bytes({0x68}).Value(Address(slot))              // push slot
        .Bytes({0xB8}).Value(Address(enter))             // mov eax, enter
        .Bytes({0xFF, 0xD0})                             // call eax
        .Bytes({0x83, 0xC4, 0x08})                       // add esp, 8
        .Bytes({0xC2}).Value(static_cast<short>(size));  // ret size
    // clang-format on
}
#else
constexpr unsigned char kStackOfSlot = 40, kBehindTheSub = 7;

// Tells the system how to unwind a slot's code, whose first `prologue` bytes reserve `kStackOfSlot` bytes of stack.
void DescribeFrame(unsigned char* code, unsigned char prologue)
{
    constexpr unsigned char kVersion = 1, kAllocateSmall = 2;
    unsigned char* description = code + CodePages::kPiece - 8;
    const unsigned char bytes[8] = {kVersion, prologue, 1, 0, prologue, kAllocateSmall | (kStackOfSlot / 8 - 1) << 4,
                                    0,        0};
    std::memcpy(description, bytes, sizeof bytes);
    const auto offset = static_cast<DWORD>(description - code);
    auto* function = new RUNTIME_FUNCTION{0, offset, {offset}};  // kept with the code
    if (!RtlAddFunctionTable(function, 1, Address(code))) throw com::Failure(E_UNEXPECTED);
}

// The first four arguments come in registers and are copied to the stack space that the caller reserves for them, so
// that all arguments are contiguous.
void WriteSlotCode(unsigned char* code, const Slot* slot, Enter enter)
{
    struct Spill {
        std::initializer_list<int> integer, number;
    };
    static const Spill kSpills[] = {
        {{0x48, 0x89, 0x4C, 0x24, 0x08}, {0xF2, 0x0F, 0x11, 0x44, 0x24, 0x08}},  // [rsp+8],  rcx or xmm0
        {{0x48, 0x89, 0x54, 0x24, 0x10}, {0xF2, 0x0F, 0x11, 0x4C, 0x24, 0x10}},  // [rsp+16], rdx or xmm1
        {{0x4C, 0x89, 0x44, 0x24, 0x18}, {0xF2, 0x0F, 0x11, 0x54, 0x24, 0x18}},  // [rsp+24], r8  or xmm2
        {{0x4C, 0x89, 0x4C, 0x24, 0x20}, {0xF2, 0x0F, 0x11, 0x5C, 0x24, 0x20}},  // [rsp+32], r9  or xmm3
    };
    CodeWriter writer(code);
    const auto& parameters = slot->method->parameters;
    for (std::size_t i = 0; i < std::size(kSpills) && i <= parameters.size(); ++i) {
        const bool isNumber = i > 0 && parameters[i - 1].type == VT_R8 && !parameters[i - 1].isReference;
        writer.Bytes(isNumber ? kSpills[i].number : kSpills[i].integer);
    }
    // clang-format off
    writer.Bytes({0x48, 0x8D, 0x54, 0x24, 0x08})    // lea rdx, [rsp+8]
        .Bytes({0x48, 0xB9}).Value(Address(slot))   // mov rcx, slot
        .Bytes({0x48, 0xB8}).Value(Address(enter))  // mov rax, enter
        .Bytes({0x48, 0x83, 0xEC, kStackOfSlot})            // sub rsp, 40
        .Bytes({0xFF, 0xD0})                        // call rax
        .Bytes({0x48, 0x83, 0xC4, kStackOfSlot})            // add rsp, 40
        .Bytes({0xC3});                             // ret
    // clang-format on
    DescribeFrame(code, static_cast<unsigned char>(writer.Next() - code - kBehindTheSub));
}
#endif

// Where each argument's value is; `arguments` starts at the interface pointer that precedes them.
std::vector<void*> PlacesOf(const MethodShape& method, std::byte* arguments)
{
    std::vector<void*> places;
    std::byte* next = arguments + sizeof(void*);
    for (const ParameterShape& parameter : method.parameters) {
#ifdef __i386__
        places.push_back(next);
        next += std::max<std::size_t>(parameter.Size(), sizeof(void*));
#else
        // A value that does not fit into a register is passed as a pointer to the caller's copy.
        places.push_back(parameter.Size() > sizeof(void*) ? *reinterpret_cast<void**>(next) : next);
        next += sizeof(void*);
#endif
    }
    return places;
}

}  // namespace

// The functions that vtables lead to.
struct DynamicFake::Entrance {
    static HRESULT STDMETHODCALLTYPE QueryInterface(Interface* face, REFIID iid, void** result)
    {
        return face->owner->QueryInterface(iid, result);
    }
    static ULONG STDMETHODCALLTYPE AddRef(Interface* face) { return face->owner->AddRef(); }
    static ULONG STDMETHODCALLTYPE Release(Interface* face) { return face->owner->Release(); }
    static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(Interface*, UINT* count)
    {
        *count = 1;
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE GetTypeInfo(Interface* face, UINT index, LCID, ITypeInfo** info)
    {
        return com::DispatchGetTypeInfo(face->shape->iid, index, info);
    }
    static HRESULT STDMETHODCALLTYPE GetIDsOfNames(Interface* face, REFIID, LPOLESTR* names, UINT count, LCID,
                                                   DISPID* ids)
    {
        return com::DispatchGetIDsOfNames(face->shape->iid, names, count, ids);
    }
    static HRESULT STDMETHODCALLTYPE Invoke(Interface* face, DISPID member, REFIID, LCID, WORD flags,
                                            DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                            UINT* argumentError)
    {
        return com::DispatchInvoke(face->shape->iid, face, member, flags, parameters, result, exception, argumentError);
    }
    static HRESULT __cdecl Own(const Slot* slot, std::byte* arguments)
    {
        DynamicFake* owner = (*reinterpret_cast<Interface**>(arguments))->owner;
        const HRESULT result = com::NoThrow([&] { return owner->Take(*slot->shape, *slot->method, arguments); });
        const LastAct last = std::exchange(owner->lastAct, {});
        return last.act ? last.act(last.what) : result;
    }
    // Made once for each interface and kept forever, like the code of an ordinary class.
    static const void* const* VtableOf(const InterfaceShape& shape)
    {
        static auto& known = *new std::map<const InterfaceShape*, std::vector<const void*>>;
        static CodePages pages;
        const auto [entry, isNew] = known.try_emplace(&shape);
        std::vector<const void*>& vtable = entry->second;
        if (isNew) {
            vtable = {
                reinterpret_cast<const void*>(QueryInterface), reinterpret_cast<const void*>(AddRef),
                reinterpret_cast<const void*>(Release),        reinterpret_cast<const void*>(GetTypeInfoCount),
                reinterpret_cast<const void*>(GetTypeInfo),    reinterpret_cast<const void*>(GetIDsOfNames),
                reinterpret_cast<const void*>(Invoke),
            };
            for (const MethodShape& method : shape.methods) {
                unsigned char* code = pages.Next();
                WriteSlotCode(code, new Slot{&shape, &method}, Own);
                vtable.push_back(code);
            }
            FlushInstructionCache(GetCurrentProcess(), nullptr, 0);
        }
        return vtable.data();
    }
};

ComPtr<DynamicFake> DynamicFake::Make(std::wstring name)
{
    return ComPtr<DynamicFake>(new DynamicFake(std::move(name)));
}

STDMETHODIMP DynamicFake::QueryInterface(REFIID iid, void** result)
{
    *result = nullptr;
    return com::NoThrow([&] {
        if (std::count(refused.begin(), refused.end(), iid)) return E_NOINTERFACE;
        if (IsEqualIID(iid, IID_IUnknown)) {
            *result = static_cast<IUnknown*>(this);
            AddRef();
            return S_OK;
        }
        // A query for IDispatch gets ICapeIdentification. The fake is not a proxy, so it does not offer IOriginalObject.
        const IID& wanted = IsEqualIID(iid, IID_IDispatch) ? __uuidof(ICapeIdentification) : iid;
        const InterfaceShape* shape = IsEqualIID(iid, __uuidof(IOriginalObject)) ? nullptr : ShapeOf(wanted);
        if (!shape) return E_NOINTERFACE;
        auto found = std::find_if(interfaces.begin(), interfaces.end(),
                                  [&](const auto& known) { return known->shape == shape; });
        if (found == interfaces.end()) {
            interfaces.push_back(std::make_shared<Interface>(Interface{Entrance::VtableOf(*shape), this, shape}));
            found = std::prev(interfaces.end());
        }
        *result = found->get();
        AddRef();
        return S_OK;
    });
}

STDMETHODIMP_(ULONG) DynamicFake::AddRef() { return ++references; }

STDMETHODIMP_(ULONG) DynamicFake::Release()
{
    const ULONG left = --references;
    if (left == 0) delete this;
    return left;
}

ComPtr<IDispatch> DynamicFake::Face(const IID& iid)
{
    ComPtr<IDispatch> face;
    com::Check(QueryInterface(iid, reinterpret_cast<void**>(face.GetAddressOf())));
    return face;
}

HRESULT DynamicFake::Take(const InterfaceShape& shape, const MethodShape& method, std::byte* arguments)
{
    const IncomingCall call{shape, method, PlacesOf(method, arguments)};
    RecordedCall record{&shape, &method, {}};
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        record.arguments.emplace_back(static_cast<const char*>(call.arguments[i]), method.parameters[i].Size());
    }
    calls.push_back(std::move(record));
    return handler ? handler(call) : AnswerName(call);
}

HRESULT DynamicFake::AnswerName(const IncomingCall& call) const
{
    if (call.method.name != "get_ComponentName") return S_OK;
    **static_cast<BSTR**>(call.arguments[0]) = SysAllocString(name.c_str());
    return S_OK;
}

}  // namespace zelt::test
