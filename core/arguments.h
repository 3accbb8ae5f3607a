// Descriptors of a proxied method's arguments, the vocabulary of its row. A descriptor that carries an argument has the
// parameter's C++ type as `Parameter`, and the engine checks the row against the method's signature at compile time. A mark
// carries none: it adds a check in its place among the logged arguments.
//
// Steps, in this order: Begin (whatever becomes of the call), Describe (only for a logged call: log the input, make the check),
// Answer (a result that ends the call without forwarding), Prepare (only for a logged call: wrap what goes in), Value (what is
// forwarded), Finish (after forwarding or an answer: wrap and log what comes back), Release. An exception from Describe or Finish
// costs an entry of the log; one from Prepare ends the call. The other steps throw nothing.
#pragma once

#include <optional>
#include <type_traits>

#include "log/enumeration_writers.h"
#include "core/logged_call.h"
#include "system/narrow.h"
#include "log/value_writers.h"
#include "log/variant_writer.h"

namespace zelt {

struct Mark {};

template <class D>
inline constexpr bool kIsMark = std::is_base_of_v<Mark, D>;

// What a descriptor does in a step where it has nothing to do.
struct NoSteps {
    void Begin() const {}
    void Describe(LoggedCall&) const {}
    std::optional<HRESULT> Answer(LoggedCall&) { return {}; }
    [[nodiscard]] HRESULT Prepare(LoggedCall&) { return S_OK; }
    void Finish(LoggedCall&, HRESULT&) const {}
    void Release() {}
};

// Whether the descriptor has nothing to do in a call that is not logged. One with its own Finish declares FinishOnlyLogs.
template <class D>
consteval bool OnlyLogs()
{
    constexpr bool kBegins = !std::is_same_v<decltype(&D::Begin), decltype(&NoSteps::Begin)>;
    constexpr bool kAnswers = !std::is_same_v<decltype(&D::Answer), decltype(&NoSteps::Answer)>;
    constexpr bool kFinishes = !std::is_same_v<decltype(&D::Finish), decltype(&NoSteps::Finish)>;
    return !kBegins && !kAnswers && (!kFinishes || requires { typename D::FinishOnlyLogs; });
}

// --- How a value is written, chosen by its C++ type unless the row says otherwise.

struct ByType {
    template <class T>
    static void Write(LogDocument& document, const char* name, bool isIn, const T& value)
    {
        if constexpr (std::is_pointer_v<T> && std::is_convertible_v<T, IUnknown*>) {
            WriteArg(document, name, isIn, static_cast<IUnknown*>(value));
        } else {
            WriteArg(document, name, isIn, value);
        }
    }
};

struct AsShape {
    Shape shape;
    void Write(LogDocument& document, const char* name, bool isIn, const VARIANT& value) const
    {
        WriteArg(document, name, isIn, value, shape);
    }
};

struct AsVariantBool {
    static void Write(LogDocument& document, const char* name, bool isIn, VARIANT_BOOL value)
    {
        WriteVariantBoolArg(document, name, isIn, value);
    }
};

struct AsFlags {
    static void Write(LogDocument& document, const char* name, bool isIn, int value)
    {
        WriteFlagsArg(document, name, isIn, value);
    }
};

// --- Inputs and outputs.

template <class T, class Format>
struct InArgument : NoSteps {
    using Parameter = T;
    const char* name;
    const T& value;
    Format format;

    InArgument(const char* name, const T& value, Format format) : name(name), value(value), format(format) {}
    void Describe(LoggedCall& call) const
    {
        if (LogDocument* log = call.Document()) format.Write(*log, name, true, value);
    }
    const T& Value() const { return value; }
};

// A value that goes in: string, number, enumeration, interface pointer or VARIANT.
template <class T>
auto In(const char* name, const T& value)
{
    return InArgument<T, ByType>(name, value, {});
}
inline auto In(const char* name, const VARIANT& value, Shape shape)
{
    return InArgument<VARIANT, AsShape>(name, value, {shape});
}
inline auto InBool(const char* name, const VARIANT_BOOL& value)
{
    return InArgument<VARIANT_BOOL, AsVariantBool>(name, value, {});
}
inline auto InFlags(const char* name, const int& value) { return InArgument<int, AsFlags>(name, value, {}); }

// An input that is logged as an output, before the call is forwarded: readers of existing logs rely on it.
struct InShownAsOut : InArgument<VARIANT, AsShape> {
    InShownAsOut(const char* name, const VARIANT& value, Shape shape) : InArgument(name, value, {shape}) {}
    void Describe(LoggedCall& call) const
    {
        if (LogDocument* log = call.Document()) format.Write(*log, name, false, value);
    }
};

void WarnNullOutput(LogDocument& document, const char* name);

template <class T, class Format>
struct OutArgument : NoSteps {
    using Parameter = T*;
    using FinishOnlyLogs = void;
    const char* name;
    T* value;
    Format format;

    OutArgument(const char* name, T* value, Format format) : name(name), value(value), format(format) {}
    T* Value() const { return value; }
    void Finish(LoggedCall& call, HRESULT& result) const
    {
        LogDocument* log = call.Document();
        if (!log || FAILED(result)) return;
        value ? format.Write(*log, name, false, *value) : WarnNullOutput(*log, name);
    }
};

// A value that comes back; logged only when the call succeeded.
template <class T>
auto Out(const char* name, T* value)
{
    return OutArgument<T, ByType>(name, value, {});
}
// A list of names may come back empty, because the standard returns a list without elements that way. Values may not, unless the
// shape says that the caller need not have asked for them.
inline auto Out(const char* name, VARIANT* value, Shape shape)
{
    shape.allowEmpty |= shape.type == kStrings.type;
    return OutArgument<VARIANT, AsShape>(name, value, {shape});
}
inline auto OutBool(const char* name, VARIANT_BOOL* value)
{
    return OutArgument<VARIANT_BOOL, AsVariantBool>(name, value, {});
}

// --- Interface pointers.

// A proxy for the length of a call. The callee may hold it longer, but must not take it away by releasing too often.
class LentProxy {
public:
    LentProxy() = default;
    ~LentProxy() { TakeBack(); }
    LentProxy(LentProxy&& other) noexcept
        : proxy(std::exchange(other.proxy, nullptr)), face(std::exchange(other.face, nullptr))
    {}

    [[nodiscard]] HRESULT Lend(CapeOpenBase& lent);
    void TakeBack()
    {
        face = nullptr;
        if (CapeOpenBase* taken = std::exchange(proxy, nullptr)) taken->Unpin();
    }
    IDispatch* Get() const { return face; }

private:
    CapeOpenBase* proxy = nullptr;
    IDispatch* face = nullptr;
};

// An object that goes in and is replaced by a proxy while the call is logged. Null goes in as null.
struct WrappedIn : NoSteps {
    using Parameter = IDispatch*;
    const char* name;
    IDispatch* pointer;
    WrapSite site;
    LentProxy wrapper;

    WrappedIn(const char* name, IDispatch* pointer, WrapSite site) : name(name), pointer(pointer), site(site) {}
    void Describe(LoggedCall& call) const;
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    IDispatch* Value() const { return wrapper.Get() ? wrapper.Get() : pointer; }
    void Release() { wrapper.TakeBack(); }

protected:
    // Puts a proxy in the object's place.
    [[nodiscard]] HRESULT Replace(LoggedCall& call, bool makesReadOnly);
};

// The same with one more pointer in between. The callee gets the address of a copy, so that the caller's slot is never written;
// null at either level goes in as null.
struct WrappedInSlot : WrappedIn {
    using Parameter = IDispatch**;
    bool isNull;
    mutable IDispatch* copy = nullptr;

    WrappedInSlot(const char* name, IDispatch** slot, WrapSite site)
        : WrappedIn(name, slot ? *slot : nullptr, site), isNull(!slot)
    {}
    IDispatch** Value() const
    {
        copy = WrappedIn::Value();
        return isNull ? nullptr : &copy;
    }
};

// How the log shows a returned object that is replaced by a proxy.
enum class Shown { AsProxy, AsReturned };

// An object that comes back and is replaced by a proxy, logged or not. A failed call leaves null.
struct WrappedOut : NoSteps {
    using Parameter = IDispatch**;
    const char* name;
    IDispatch** pointer;
    WrapSite site;
    Shown shown;

    WrappedOut(const char* name, IDispatch** pointer, WrapSite site, Shown shown = Shown::AsProxy)
        : name(name), pointer(pointer), site(site), shown(shown)
    {}
    void Begin() const
    {
        if (pointer) *pointer = nullptr;
    }
    IDispatch** Value() const { return pointer; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// An object that comes back, logged as it was returned. If it is one of our proxies, the caller gets the object behind it, which
// it once handed in itself. A failed call leaves null.
struct OriginalOut : NoSteps {
    using Parameter = IDispatch**;
    const char* name;
    IDispatch** pointer;

    OriginalOut(const char* name, IDispatch** pointer) : name(name), pointer(pointer) {}
    void Begin() const
    {
        if (pointer) *pointer = nullptr;
    }
    IDispatch** Value() const { return pointer; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// An array of objects that comes back: logged as it was returned, then rebuilt with the same bounds and one proxy per element.
struct WrappedArrayOut : NoSteps {
    using Parameter = VARIANT*;
    const char* name;
    VARIANT* array;
    WrapSite site;

    WrappedArrayOut(const char* name, VARIANT* array, WrapSite site) : name(name), array(array), site(site) {}
    VARIANT* Value() const { return array; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// A pointer to an interface pointer that goes in as it is: the inner pointer is logged, and the callee gets the address of a
// copy, so that the caller's slot is never written. Null at either level passes as null.
struct InSlot : NoSteps {
    using Parameter = IDispatch**;
    const char* name;
    bool isNull;
    mutable IDispatch* copy;

    InSlot(const char* name, IDispatch** slot) : name(name), isNull(!slot), copy(slot ? *slot : nullptr) {}
    void Describe(LoggedCall& call) const;
    IDispatch** Value() const { return isNull ? nullptr : &copy; }
};

// --- Marks.

// The method changes the object: an error on a proxy that is read-only.
struct Write : Mark, NoSteps {
    void Describe(LoggedCall& call) const;
};

// The wrapped object has to exist; the proxy may make it now.
struct NeedsObject : Mark, NoSteps {
    std::optional<HRESULT> Answer(LoggedCall& call)
    {
        const HRESULT made = com::NoThrow([&] { return call.Proxy().RequireObject(call); });
        return FAILED(made) ? std::optional(made) : std::nullopt;
    }
};

// An error when the condition holds; the call goes on.
struct ErrorIf : Mark, NoSteps {
    bool condition;
    Sentence sentence;

    ErrorIf(bool condition, Sentence sentence) : condition(condition), sentence(sentence) {}
    void Describe(LoggedCall& call) const;
};

// Keeps the object behind a proxy alive during the forwarded call. Leaves null, and an object that is no proxy, alone.
struct HoldOriginal : Mark, NoSteps {
    IUnknown* object;
    ForeignPtr<IUnknown> original;

    explicit HoldOriginal(IUnknown* object) : object(object) {}
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    void Release() { original = ForeignPtr<IUnknown>(); }
};

}  // namespace zelt
