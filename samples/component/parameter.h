// The parameters of a sample component: what each may contain, its value, and the interfaces through which a simulator
// reaches it. A ParameterSet belongs to its component; the COM objects that it hands out keep a parameter's value
// alive, so a simulator may hold them longer than the component. Does not save anything itself.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace zelt::sample {

// Exponents of metre, kilogram, second, ampere, kelvin, mole, candela and radian. Empty: no dimension.
using Dimensionality = std::vector<double>;

struct RealSpecification {
    double initial, lower, upper;  // SI
    Dimensionality dimensionality;
};
struct IntegerSpecification {
    long initial, lower, upper;
};
struct OptionSpecification {
    std::wstring initial;
    std::vector<std::wstring> options;
    bool restricted;  // only the options are accepted
};
struct BooleanSpecification {
    bool initial;
};
// A list of real numbers, each with its own specification.
struct ArraySpecification {
    std::vector<RealSpecification> items;
};
using Specification = std::variant<RealSpecification, IntegerSpecification, OptionSpecification, BooleanSpecification,
                                   ArraySpecification>;

eCapeParamType TypeOf(const Specification& specification);
_variant_t InitialValue(const Specification& specification);
// The value in the specification's type. Throws CapeFailure ("invalid argument") when it cannot be converted.
_variant_t ConvertValue(const Specification& specification, const VARIANT& value);

// What is wrong with a value, as a sentence; empty for a valid value.
std::wstring ObjectionTo(const RealSpecification& specification, double value);
std::wstring ObjectionTo(const IntegerSpecification& specification, long value);
std::wstring ObjectionTo(const OptionSpecification& specification, std::wstring_view value);
std::wstring ObjectionTo(const Specification& specification, const VARIANT& value);

struct ParameterDefinition {
    std::wstring name;
    std::wstring description;
    Specification specification;
};

struct ParameterState {
    ParameterDefinition definition;
    _variant_t value;
    eCapeParamMode mode = CAPE_INPUT;
    eCapeValidationStatus status = CAPE_NOT_VALIDATED;
};

class ParameterSet {
public:
    explicit ParameterSet(std::vector<ParameterDefinition> definitions);

    // The value of a parameter, which must exist and have that type. Throws CapeFailure ("invalid operation") with the
    // objection when the value is outside the specification.
    double Real(std::wstring_view name) const;
    long Integer(std::wstring_view name) const;
    std::wstring Option(std::wstring_view name) const;
    bool Boolean(std::wstring_view name) const;
    std::vector<double> Array(std::wstring_view name) const;

    // A new collection object over the same parameters.
    Microsoft::WRL::ComPtr<IDispatch> Collection(std::wstring name) const;

    // In the order of the definitions, for saving and loading values.
    std::span<const std::shared_ptr<ParameterState>> States() const { return states; }

private:
    const VARIANT& ValidValue(std::wstring_view name) const;

    std::vector<std::shared_ptr<ParameterState>> states;
    std::vector<Microsoft::WRL::ComPtr<IDispatch>> objects;
};

}  // namespace zelt::sample
