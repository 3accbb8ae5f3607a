// The simulator's context as a component sees it. Holds one reference until Reset. A simulator need not offer any of this:
// if the context lacks or refuses something, the functions do nothing or return an empty result. Only a list of names that
// is not an array of strings throws CapeFailure.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelt::sample {

class ContextView {
public:
    // Null removes the context.
    void Set(IDispatch* object) { context = object; }
    void Reset() { context.Reset(); }
    explicit operator bool() const { return context != nullptr; }

    // ICapeDiagnostic::LogMessage.
    void Log(const std::wstring& message) const;
    // ICapeCOSEUtilities: the value with this name as text, if the list of names contains it.
    std::optional<std::wstring> NamedText(const wchar_t* name) const;
    // ICapeMaterialTemplateSystem: the names of the templates.
    std::vector<std::wstring> Templates() const;
    // Makes a material from the template, after an attempt to set the property in the template; null if none can be made.
    Microsoft::WRL::ComPtr<IDispatch> MaterialFrom(const std::wstring& templateName, const wchar_t* property,
                                                   std::span<const double> values) const;

private:
    template <class I>
    Microsoft::WRL::ComPtr<I> Query() const;

    Microsoft::WRL::ComPtr<IDispatch> context;
};

}  // namespace zelt::sample
