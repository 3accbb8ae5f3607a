#include "log/failure_detail.h"

#include <cape-open.h>

#include "guard/foreign_text.h"

namespace zelt {
namespace {

// Components return it for a property that is not available, although CAPE-OPEN's codes end at 0x8004051A.
constexpr auto kUnavailableProperty = static_cast<HRESULT>(0x80040520);

// For CAPE-OPEN's own codes, the error line already has the description. An object that the call did not reach is not asked.
bool MayDescribe(HRESULT code)
{
    const bool isCapeOpens =
        code >= static_cast<HRESULT>(ECapeUnknownHR) && code <= static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
    return !isCapeOpens && HRESULT_FACILITY(code) != FACILITY_RPC;
}

std::string Trimmed(const std::string& text)
{
    constexpr char kBlanks[] = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// Whether `text` tells the reader something that the error line does not.
bool IsNews(const std::string& text, const FailureText& line)
{
    return !text.empty() && (line.name + ": " + line.description).find(text) == std::string::npos;
}

}  // namespace

std::optional<FailureDetail> DetailOfFailure(HRESULT code, IUnknown* source, IErrorInfo* information,
                                             const FailureText& line) noexcept
{
    try {
        if (information) {
            std::string text = Trimmed(ForeignText(information, &IErrorInfo::GetDescription));
            if (IsNews(text, line)) {
                std::string origin = Trimmed(ForeignText(information, &IErrorInfo::GetSource));
                const Sentence sentence = origin.empty() ? Sentence::ErrorInformation : Sentence::ErrorInformationOf;
                return FailureDetail{sentence, std::move(text), std::move(origin)};
            }
        }
        if (source && MayDescribe(code)) {
            std::string text = Trimmed(TextOfInterface(source, &ECapeUser::get_description));
            if (IsNews(text, line)) return FailureDetail{Sentence::DescriptionOfObject, std::move(text), {}};
        }
        if (code != kUnavailableProperty) return {};
        std::string name = source ? Trimmed(TextOfInterface(source, &ECapeRoot::get_name)) : std::string();
        if (name.empty()) return FailureDetail{Sentence::UnavailableProperty, {}, {}};
        return FailureDetail{Sentence::NameOfError, std::move(name), {}};
    } catch (...) {
        return {};
    }
}

}  // namespace zelt
