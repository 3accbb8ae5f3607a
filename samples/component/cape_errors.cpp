#include "samples/component/cape_errors.h"

#include <wrl/client.h>

#include "samples/component/text.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// The name of the error's class, which ECapeRoot returns.
const wchar_t* NameOf(HRESULT code)
{
    static constexpr const wchar_t* kNames[] = {L"ECapeUnknown",
                                                L"ECapeData",
                                                L"ECapeLicenceError",
                                                L"ECapeBadCOParameter",
                                                L"ECapeBadArgument",
                                                L"ECapeInvalidArgument",
                                                L"ECapeOutOfBounds",
                                                L"ECapeImplementation",
                                                L"ECapeNoImpl",
                                                L"ECapeLimitedImpl",
                                                L"ECapeComputation",
                                                L"ECapeOutOfResources",
                                                L"ECapeNoMemory",
                                                L"ECapeTimeOut",
                                                L"ECapeFailedInitialisation",
                                                L"ECapeSolvingError",
                                                L"ECapeBadInvOrder",
                                                L"ECapeInvalidOperation",
                                                L"ECapePersistence",
                                                L"ECapeIllegalAccess",
                                                L"ECapePersistenceNotFound",
                                                L"ECapePersistenceSystemError",
                                                L"ECapePersistenceOverflow",
                                                L"ECapeOutsideSolverScope",
                                                L"ECapeHessianInfoNotAvailable",
                                                L"ECapeThrmPropertyNotAvailable"};
    const auto index =
        static_cast<std::size_t>(static_cast<unsigned long>(code) - static_cast<unsigned long>(ECapeUnknownHR));
    return index < std::size(kNames) ? kNames[index] : kNames[0];
}

// Returns a getter's text through `out`; fails only for a null pointer or lack of memory.
HRESULT Answer(BSTR* out, std::wstring_view text)
{
    if (!out) return E_POINTER;
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

std::wstring_view TextOf(const _bstr_t& text)
{
    return text.length() ? std::wstring_view(static_cast<const wchar_t*>(text), text.length()) : std::wstring_view();
}

}  // namespace

CapeErrors::CapeErrors(com::Object& object, const wchar_t* source)
    : source(source),
      root(object, state),
      user(object, state),
      unknown(object),
      data(object),
      badArgument(object),
      invalidArgument(object),
      outOfBounds(object),
      boundaries(object, state),
      implementation(object),
      noImpl(object),
      limitedImpl(object),
      computation(object),
      outOfResources(object),
      noMemory(object),
      failedInitialisation(object),
      solvingError(object),
      badInvOrder(object, state),
      invalidOperation(object),
      propertyNotAvailable(object),
      support(object)
{}

HRESULT CapeErrors::Raise(REFIID iid, const wchar_t* interfaceName, const wchar_t* operation,
                          const CapeFailure& failure) noexcept
{
    try {
        state = State{};
        state.code = failure.code;
        state.description = MakeBstr(failure.description);
        state.interfaceName = MakeBstr(interfaceName);
        state.operation = MakeBstr(operation);
        state.requestedOperation = MakeBstr(failure.requestedOperation);
        if (failure.bounds) {
            state.lower = failure.bounds->lower;
            state.upper = failure.bounds->upper;
            state.value = failure.bounds->value;
            state.boundType = MakeBstr(failure.bounds->type);
        }
        ComPtr<ICreateErrorInfo> creator;
        ComPtr<IErrorInfo> info;
        if (SUCCEEDED(CreateErrorInfo(&creator)) && SUCCEEDED(creator.As(&info))) {
            creator->SetGUID(iid);
            creator->SetSource(const_cast<LPOLESTR>(source));
            creator->SetDescription(state.description.GetBSTR());
            SetErrorInfo(0, info.Get());
        }
    } catch (...) {
        // Without memory for the texts, the code still identifies the error.
    }
    return failure.code;
}

HRESULT CapeErrors::Caught(REFIID iid, const wchar_t* interfaceName, const wchar_t* operation) noexcept
{
    try {
        try {
            throw;
        } catch (const CapeFailure& failure) {
            return Raise(iid, interfaceName, operation, failure);
        } catch (const OutOfRange& range) {
            return Raise(iid, interfaceName, operation,
                         CapeFailure::OutOfBounds(Widen(range.what()), range.value, range.lower, range.upper));
        } catch (const NoSolution& failure) {
            return Raise(iid, interfaceName, operation, CapeFailure(ECapeSolvingErrorHR, Widen(failure.what())));
        } catch (const com::Failure& failure) {
            return Raise(iid, interfaceName, operation,
                         CapeFailure(ECapeUnknownHR, DescribeFailure(nullptr, failure.Code())));
        } catch (const std::bad_alloc&) {
            return Raise(iid, interfaceName, operation, CapeFailure(ECapeNoMemoryHR, L"out of memory"));
        } catch (...) {
            return Raise(iid, interfaceName, operation, CapeFailure(ECapeUnknownHR, L"unexpected error"));
        }
    } catch (...) {
        // There was not enough memory to build the description.
        return static_cast<HRESULT>(ECapeNoMemoryHR);
    }
}

STDMETHODIMP CapeErrors::RootPart::get_name(BSTR* name) { return Answer(name, NameOf(state.code)); }

STDMETHODIMP CapeErrors::UserPart::get_code(long* code) { return Answer(code, static_cast<long>(state.code)); }
STDMETHODIMP CapeErrors::UserPart::get_description(BSTR* text) { return Answer(text, TextOf(state.description)); }
STDMETHODIMP CapeErrors::UserPart::get_scope(BSTR* text) { return Answer(text, TextOf(state.operation)); }
STDMETHODIMP CapeErrors::UserPart::get_interfaceName(BSTR* text) { return Answer(text, TextOf(state.interfaceName)); }
STDMETHODIMP CapeErrors::UserPart::get_operation(BSTR* text) { return Answer(text, TextOf(state.operation)); }
STDMETHODIMP CapeErrors::UserPart::get_moreInfo(BSTR* text) { return Answer(text, std::wstring_view()); }

// The description names the argument; its position in the argument list is not known here.
STDMETHODIMP CapeErrors::BadArgumentPart::get_position(short* position) { return Answer(position, short{0}); }

STDMETHODIMP CapeErrors::BadInvOrderPart::get_requestedOperation(BSTR* text)
{
    return Answer(text, TextOf(state.requestedOperation));
}

STDMETHODIMP CapeErrors::BoundariesPart::get_LowerBound(double* bound) { return Answer(bound, state.lower); }
STDMETHODIMP CapeErrors::BoundariesPart::get_UpperBound(double* bound) { return Answer(bound, state.upper); }
STDMETHODIMP CapeErrors::BoundariesPart::get_value(double* value) { return Answer(value, state.value); }
STDMETHODIMP CapeErrors::BoundariesPart::get_Type(BSTR* type) { return Answer(type, TextOf(state.boundType)); }

STDMETHODIMP CapeErrors::SupportPart::InterfaceSupportsErrorInfo(REFIID iid)
{
    return object.FindInterface(iid) ? S_OK : S_FALSE;
}

}  // namespace zelt::sample
