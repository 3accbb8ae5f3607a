#include "samples/field/own_specification.h"

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/parameter_part.h"
#include "samples/component/specification_parts.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

class SelfSpecifiedPart final : public ParameterPart {
public:
    using ParameterPart::ParameterPart;
    STDMETHOD(get_Specification)(IDispatch** spec) override
    {
        if (!spec) return E_POINTER;
        return object.QueryInterface(IID_IDispatch, reinterpret_cast<void**>(spec));
    }
};

template <class TypedPart, class Own>
class SelfSpecifiedParameter final : public com::Object {
public:
    SelfSpecifiedParameter(const std::shared_ptr<ParameterState>& state, const Own& own)
        : parameter(*this, errors, state),
          typed(*this, errors, state->definition.name, own),
          specification(*this, errors, state->definition.specification),
          identification(*this, errors, state->definition.name, state->definition.description)
    {}

protected:
    IDispatch* ScriptInterface() override { return &parameter; }

private:
    CapeErrors errors{*this, L"ZeltSample.SelfSpecifiedParameter"};
    SelfSpecifiedPart parameter;
    TypedPart typed;
    SpecificationPart specification;
    IdentificationPart identification;
};

struct Maker {
    const std::shared_ptr<ParameterState>& state;

    template <class TypedPart, class Own>
    ComPtr<IDispatch> Make(const Own& own) const
    {
        ComPtr<IDispatch> result;
        com::Check(com::Create<SelfSpecifiedParameter<TypedPart, Own>>(IID_PPV_ARGS(&result), state, own));
        return result;
    }
    ComPtr<IDispatch> operator()(const RealSpecification& own) const { return Make<RealSpecificationPart>(own); }
    ComPtr<IDispatch> operator()(const IntegerSpecification& own) const { return Make<IntegerSpecificationPart>(own); }
    ComPtr<IDispatch> operator()(const OptionSpecification& own) const { return Make<OptionSpecificationPart>(own); }
    ComPtr<IDispatch> operator()(const BooleanSpecification& own) const { return Make<BooleanSpecificationPart>(own); }
    ComPtr<IDispatch> operator()(const ArraySpecification& own) const { return Make<ArraySpecificationPart>(own); }
};

}  // namespace

ComPtr<IDispatch> CreateSelfSpecifiedParameter(const std::shared_ptr<ParameterState>& state)
{
    return std::visit(Maker{state}, state->definition.specification);
}

}  // namespace zelt::sample
