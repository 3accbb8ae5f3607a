// The values of a component's parameters, as a user of the simulator shows and sets them. The functions and the constructor
// throw CapeFailure when a call fails. `object` is a collection of parameters.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <string>

#include "samples/simulator/report.h"

namespace zelt::sample {

// One line for each parameter: its name and value.
void ShowValues(IDispatch* object, Report& report);
// Sets a parameter from a text, in the parameter's type; semicolons separate a list's values.
void SetParameter(IDispatch* object, const std::wstring& name, const std::wstring& text);

// While this exists, the collection's first real parameter has a value that its specification does not allow.
class WrongValue {
public:
    // Does nothing when there is no such parameter.
    explicit WrongValue(IDispatch* object);
    ~WrongValue();
    WrongValue(const WrongValue&) = delete;
    WrongValue& operator=(const WrongValue&) = delete;
    explicit operator bool() const { return parameter != nullptr; }

private:
    Microsoft::WRL::ComPtr<ICapeParameter> parameter;
    _variant_t former;
};

}  // namespace zelt::sample
