// The specification objects: ICapeParameterSpec with one of the five typed interfaces.
#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/parameter_objects.h"
#include "samples/component/specification_parts.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

template <class TypedPart, class Own>
class SpecificationObject final : public com::Object {
public:
    SpecificationObject(const std::wstring& name, const Own& own)
        : typed(*this, errors, name, own),
          spec(*this, errors, Specification(own)),
          identification(*this, errors, name, L"Specification of a parameter")
    {}

protected:
    // The typed interface has the bounds and options. Scripts need no ICapeParameterSpec: a parameter's value shows its type.
    IDispatch* ScriptInterface() override { return &typed; }

private:
    CapeErrors errors{*this, L"ZeltSample.ParameterSpecification"};
    TypedPart typed;
    SpecificationPart spec;
    IdentificationPart identification;
};

template <class TypedPart, class Own>
ComPtr<IDispatch> Make(const std::wstring& name, const Own& own)
{
    ComPtr<IDispatch> result;
    com::Check(com::Create<SpecificationObject<TypedPart, Own>>(IID_PPV_ARGS(&result), name, own));
    return result;
}

struct Maker {
    const std::wstring& name;
    ComPtr<IDispatch> operator()(const RealSpecification& own) const { return Make<RealSpecificationPart>(name, own); }
    ComPtr<IDispatch> operator()(const IntegerSpecification& own) const
    {
        return Make<IntegerSpecificationPart>(name, own);
    }
    ComPtr<IDispatch> operator()(const OptionSpecification& own) const
    {
        return Make<OptionSpecificationPart>(name, own);
    }
    ComPtr<IDispatch> operator()(const BooleanSpecification& own) const
    {
        return Make<BooleanSpecificationPart>(name, own);
    }
    ComPtr<IDispatch> operator()(const ArraySpecification& own) const
    {
        return Make<ArraySpecificationPart>(name, own);
    }
};

}  // namespace

ComPtr<IDispatch> CreateSpecification(const std::wstring& name, const Specification& specification)
{
    return std::visit(Maker{name}, specification);
}

}  // namespace zelt::sample
