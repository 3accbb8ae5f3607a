// The interfaces of a specification: ICapeParameterSpec and the five typed ones. They are parts of a specification object,
// or of a parameter that is its own specification.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/component/parameter_objects.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

inline VARIANT_BOOL VariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// Sets the results of Validate: the objection as the message, and whether the value is valid.
inline void AnswerValidation(const std::wstring& objection, BSTR* message, VARIANT_BOOL* isOK)
{
    if (!isOK) throw CapeFailure(ECapeInvalidArgumentHR, L"A result has nowhere to go: the pointer is null");
    Replace(message, objection);
    *isOK = VariantBool(objection.empty());
}

class SpecificationPart final : public CapePart<ICapeParameterSpec> {
public:
    SpecificationPart(com::Object& object, CapeErrors& errors, const Specification& specification)
        : CapePart(object, errors, L"ICapeParameterSpec"), type(TypeOf(specification)), dimensionality(8, 0.0)
    {
        const auto* real = std::get_if<RealSpecification>(&specification);
        if (real && !real->dimensionality.empty()) dimensionality = real->dimensionality;
    }
    STDMETHOD(get_Type)(eCapeParamType* out) override { return Answer(out, type); }
    STDMETHOD(get_Dimensionality)(VARIANT* dim) override
    {
        return Call(L"get_Dimensionality", [&] { Return(dim, MakeDoubles(dimensionality)); });
    }

private:
    eCapeParamType type;
    Dimensionality dimensionality;
};

class RealSpecificationPart final : public CapePart<ICapeRealParameterSpec> {
public:
    RealSpecificationPart(com::Object& object, CapeErrors& errors, const std::wstring&, const RealSpecification& own)
        : CapePart(object, errors, L"ICapeRealParameterSpec"), own(own)
    {}
    STDMETHOD(get_DefaultValue)(double* value) override { return Answer(value, own.initial); }
    STDMETHOD(get_LowerBound)(double* bound) override { return Answer(bound, own.lower); }
    STDMETHOD(get_UpperBound)(double* bound) override { return Answer(bound, own.upper); }
    STDMETHOD(Validate)(double value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return Call(L"Validate", [&] { AnswerValidation(ObjectionTo(own, value), message, isOK); });
    }

private:
    RealSpecification own;
};

class IntegerSpecificationPart final : public CapePart<ICapeIntegerParameterSpec> {
public:
    IntegerSpecificationPart(com::Object& object, CapeErrors& errors, const std::wstring&,
                             const IntegerSpecification& own)
        : CapePart(object, errors, L"ICapeIntegerParameterSpec"), own(own)
    {}
    STDMETHOD(get_DefaultValue)(long* value) override { return Answer(value, own.initial); }
    STDMETHOD(get_LowerBound)(long* bound) override { return Answer(bound, own.lower); }
    STDMETHOD(get_UpperBound)(long* bound) override { return Answer(bound, own.upper); }
    STDMETHOD(Validate)(long value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return Call(L"Validate", [&] { AnswerValidation(ObjectionTo(own, value), message, isOK); });
    }

private:
    IntegerSpecification own;
};

class OptionSpecificationPart final : public CapePart<ICapeOptionParameterSpec> {
public:
    OptionSpecificationPart(com::Object& object, CapeErrors& errors, const std::wstring&,
                            const OptionSpecification& own)
        : CapePart(object, errors, L"ICapeOptionParameterSpec"), own(own)
    {}
    STDMETHOD(get_DefaultValue)(BSTR* value) override
    {
        return Call(L"get_DefaultValue", [&] { Return(value, own.initial); });
    }
    STDMETHOD(get_OptionList)(VARIANT* names) override
    {
        return Call(L"get_OptionList", [&] { Return(names, MakeStrings(own.options)); });
    }
    STDMETHOD(get_RestrictedToList)(VARIANT_BOOL* restricted) override
    {
        return Answer(restricted, VariantBool(own.restricted));
    }
    STDMETHOD(Validate)(BSTR value, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return Call(L"Validate", [&] { AnswerValidation(ObjectionTo(own, TextOf(value)), message, isOK); });
    }

private:
    OptionSpecification own;
};

class BooleanSpecificationPart final : public CapePart<ICapeBooleanParameterSpec> {
public:
    BooleanSpecificationPart(com::Object& object, CapeErrors& errors, const std::wstring&,
                             const BooleanSpecification& own)
        : CapePart(object, errors, L"ICapeBooleanParameterSpec"), own(own)
    {}
    STDMETHOD(get_DefaultValue)(VARIANT_BOOL* value) override { return Answer(value, VariantBool(own.initial)); }
    STDMETHOD(Validate)(VARIANT_BOOL, BSTR* message, VARIANT_BOOL* isOK) override
    {
        return Call(L"Validate", [&] { AnswerValidation({}, message, isOK); });
    }

private:
    BooleanSpecification own;
};

class ArraySpecificationPart final : public CapePart<ICapeArrayParameterSpec> {
public:
    ArraySpecificationPart(com::Object& object, CapeErrors& errors, const std::wstring& name,
                           const ArraySpecification& own)
        : CapePart(object, errors, L"ICapeArrayParameterSpec"), name(name), own(own)
    {}
    STDMETHOD(get_NumDimensions)(long* dimensions) override { return Answer(dimensions, 1L); }
    STDMETHOD(get_Size)(VARIANT* size) override
    {
        return Call(L"get_Size", [&] { Return(size, MakeLongs({{static_cast<long>(own.items.size())}})); });
    }
    STDMETHOD(get_ItemsSpecifications)(VARIANT* specs) override
    {
        return Call(L"get_ItemsSpecifications", [&] {
            std::vector<Microsoft::WRL::ComPtr<IDispatch>> items;
            for (const RealSpecification& item : own.items) {
                items.push_back(CreateSpecification(name + L" " + std::to_wstring(items.size() + 1), item));
            }
            Return(specs, MakeInterfaces(items));
        });
    }
    // One message and one verdict for each value; a list of the wrong length counts as one wrong value.
    STDMETHOD(Validate)(VARIANT value, VARIANT* message, VARIANT* isOK) override
    {
        return Call(L"Validate", [&] {
            const std::vector<double> values = ReadDoubles(value, L"value");
            std::vector<std::wstring> messages;
            std::vector<bool> verdicts;
            if (values.size() != own.items.size()) {
                messages.push_back(ObjectionTo(Specification(own), value));
                verdicts.push_back(false);
            } else {
                for (std::size_t i = 0; i < values.size(); ++i) {
                    messages.push_back(ObjectionTo(own.items[i], values[i]));
                    verdicts.push_back(messages.back().empty());
                }
            }
            Return(isOK, MakeBooleans(verdicts));
            Replace(message, MakeStrings(messages));
        });
    }

private:
    std::wstring name;
    ArraySpecification own;
};

}  // namespace zelt::sample
