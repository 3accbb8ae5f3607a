// The values of a component's parameters as a user of the simulator shows and sets them. Everything throws CapeFailure when
// a call fails. `object` is a collection of parameters.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <string>

#include "samples/simulator/report.h"

namespace zelt::sample {

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

}  // namespace zelt::sample
