#include "samples/component/parameter_objects.h"

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/parameter_part.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

class CollectionPart final : public CapePart<ICapeCollection> {
public:
    CollectionPart(com::Object& object, CapeErrors& errors, std::span<const ComPtr<IDispatch>> items)
        : CapePart(object, errors, L"ICapeCollection"), items(items.begin(), items.end())
    {}

    STDMETHOD(Item)(VARIANT id, IDispatch** item) override
    {
        if (!item) return E_POINTER;
        *item = nullptr;
        return Call(L"Item", [&] { Find(id).CopyTo(item); });
    }
    STDMETHOD(Count)(long* itemsCount) override
    {
        if (!itemsCount) return E_POINTER;
        *itemsCount = static_cast<long>(items.size());
        return S_OK;
    }

private:
    const ComPtr<IDispatch>& Find(const VARIANT& id) const
    {
        if (V_VT(&id) == VT_BSTR) {
            for (const ComPtr<IDispatch>& item : items) {
                ComPtr<ICapeIdentification> identification;
                _bstr_t name;
                if (SUCCEEDED(item.As(&identification)) &&
                    SUCCEEDED(identification->get_ComponentName(name.GetAddress())) &&
                    SameName(TextOf(name.GetBSTR()), TextOf(V_BSTR(&id)))) {
                    return item;
                }
            }
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is no item " + Quoted(TextOf(V_BSTR(&id))));
        }
        _variant_t number;
        if (FAILED(VariantChangeTypeEx(&number, const_cast<VARIANT*>(&id), LOCALE_INVARIANT, 0, VT_I4))) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"An item is named by its number or its name");
        }
        const long index = V_I4(&number), count = static_cast<long>(items.size());
        if (index < 1 || index > count) throw CapeFailure::OutOfBounds(L"item number", index, 1, count);
        return items[static_cast<std::size_t>(index - 1)];
    }

    std::vector<ComPtr<IDispatch>> items;
};

class Collection final : public com::Object {
public:
    Collection(std::wstring name, std::span<const ComPtr<IDispatch>> items, std::wstring description)
        : collection(*this, errors, items), identification(*this, errors, std::move(name), std::move(description))
    {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    CapeErrors errors{*this, L"ZeltSample.Collection"};
    CollectionPart collection;
    IdentificationPart identification;
};

class Parameter final : public com::Object {
public:
    explicit Parameter(const std::shared_ptr<ParameterState>& state)
        : parameter(*this, errors, state),
          identification(*this, errors, state->definition.name, state->definition.description)
    {}

protected:
    IDispatch* ScriptInterface() override { return &parameter; }

private:
    CapeErrors errors{*this, L"ZeltSample.Parameter"};
    ParameterPart parameter;
    IdentificationPart identification;
};

}  // namespace

ComPtr<IDispatch> CreateCollection(std::wstring name, std::span<const ComPtr<IDispatch>> items,
                                   std::wstring description)
{
    ComPtr<IDispatch> collection;
    com::Check(com::Create<Collection>(IID_PPV_ARGS(&collection), std::move(name), items, std::move(description)));
    return collection;
}

ComPtr<IDispatch> CreateParameter(std::shared_ptr<ParameterState> state)
{
    ComPtr<IDispatch> parameter;
    com::Check(com::Create<Parameter>(IID_PPV_ARGS(&parameter), state));
    return parameter;
}

}  // namespace zelt::sample
