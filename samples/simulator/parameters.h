// What the simulator does with a component's parameters: shows each with its specification, sets it to another value,
// validates it, has a wrong value judged, and resets it. Everything is as before at the end. Throws CapeFailure when a
// call fails that should not, or when a parameter does not do what was asked.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "samples/simulator/report.h"

namespace zelt::sample {

// `object` is a collection of parameters.
void WalkParameters(IDispatch* object, Report& report);

// One line for each parameter: its name and value.
void ShowValues(IDispatch* object, Report& report);
// Sets a parameter from a text in its own type; a list's values are parted by semicolons. Throws CapeFailure.
void SetParameter(IDispatch* object, const std::wstring& name, const std::wstring& text);

// A value that the parameter's specification does not allow, put into the collection's first real parameter for as long
// as this lives.
class WrongValue {
public:
    // Nothing happens when there is no such parameter.
    explicit WrongValue(IDispatch* object);
    ~WrongValue();
    WrongValue(const WrongValue&) = delete;
    WrongValue& operator=(const WrongValue&) = delete;
    explicit operator bool() const { return parameter != nullptr; }

private:
    Microsoft::WRL::ComPtr<ICapeParameter> parameter;
    _variant_t former;
};

// The collection's first parameter and its specification, or nothing.
std::vector<Microsoft::WRL::ComPtr<IDispatch>> FirstParameter(IDispatch* object);

}  // namespace zelt::sample
