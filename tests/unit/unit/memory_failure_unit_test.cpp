// Failing allocations in the logged unit operation: when it makes, saves and loads its unit, and in its ports,
// parameters and collections.
#include "com/class_factory.h"
#include "long_run.h"
#include "memory_failure.h"
#include "sample_fixture.h"
#include "samples/units/mixer_heater.h"
#include "unit/unit_operation.h"

namespace zelt::test {
namespace {

// Makes a unit operation, initialises, configures, connects and saves it, and loads the saved data into another.
class UnitLife : public Answered {
public:
    explicit UnitLife(LogDocument* document) : document(document)
    {
        options.pravikUnit = sample::kMixerHeaterClass;
        EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
        auto slate = std::make_shared<sample::Slate>();
        slate->compounds = {{L"Benzene", L"", L"Benzene", 353, 78, L""}};
        slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
        EXPECT_EQ(S_OK, com::Create<sample::Material>(IID_PPV_ARGS(&material), slate));
    }
    ~UnitLife() { EXPECT_EQ(0u, CountCallsInProgress()); }
    UnitLife(const UnitLife&) = delete;
    UnitLife& operator=(const UnitLife&) = delete;

    void Run()
    {
        const ComPtr<CUnitOperation> unit = MakeUnit();
        ComPtr<IPersistStreamInit> persistence;
        if (!unit || !Note(unit.As(&persistence)) || !Note(persistence->InitNew())) return;
        Use(unit);
        ULARGE_INTEGER size;
        Note(persistence->GetSizeMax(&size));
        Note(persistence->IsDirty());
        if (!Note(persistence->Save(stream.Get(), TRUE))) return;
        Note(stream->Seek({}, STREAM_SEEK_SET, nullptr));
        const ComPtr<CUnitOperation> copy = MakeUnit();
        if (copy && Note(copy.As(&persistence))) Note(persistence->Load(stream.Get()));
    }

private:
    ComPtr<CUnitOperation> MakeUnit()
    {
        ComPtr<CUnitOperation> made;
        const HRESULT result = com::NoThrow([&] {
            made = ComPtr<CUnitOperation>(new CUnitOperation(options));
            made->AttachAsRoot(nullptr, document, "Unit Operation");
            return S_OK;
        });
        return Note(result) ? made : nullptr;
    }
    void Use(const ComPtr<CUnitOperation>& unit)
    {
        ComPtr<ICapeUtilities> utilities;
        ComPtr<ICapeUnit> calculation;
        ComPtr<IDispatch> found;
        if (!Note(unit.As(&utilities)) || !Note(utilities->Initialize())) return;
        if (Note(utilities->get_parameters(&found)) && found)
            EachItem(found.Get(), [this](IDispatch& item) { Ask(item); });
        if (!Note(unit.As(&calculation))) return;
        found.Reset();
        if (Note(calculation->get_ports(&found)) && found)
            EachItem(found.Get(), [this](IDispatch& item) { Plug(item); });
        Note(utilities->Terminate());
    }
    template <class Body>
    void EachItem(IDispatch* object, Body body)
    {
        ComPtr<ICapeCollection> collection;
        if (!Note(object->QueryInterface(IID_PPV_ARGS(&collection)))) return;
        long count = 0;
        Note(collection->Count(&count));
        for (long number = 1; number <= count; ++number) {
            VARIANT id;
            id.vt = VT_I4;
            id.lVal = number;
            ComPtr<IDispatch> item;
            if (Note(collection->Item(id, &item)) && item) body(*item.Get());
        }
    }
    void Ask(IDispatch& item)
    {
        ComPtr<ICapeParameter> parameter;
        if (!Note(item.QueryInterface(IID_PPV_ARGS(&parameter)))) return;
        _variant_t value;
        ComPtr<IDispatch> specification;
        ComPtr<ICapeParameterSpec> spec;
        if (Note(parameter->get_value(&value))) Note(parameter->put_value(value));
        Note(parameter->Reset());
        eCapeParamType type = CAPE_REAL;
        if (Note(parameter->get_Specification(&specification)) && specification && Note(specification.As(&spec))) {
            Note(spec->get_Type(&type));
        }
    }
    void Plug(IDispatch& item)
    {
        ComPtr<ICapeUnitPort> port;
        if (!Note(item.QueryInterface(IID_PPV_ARGS(&port)))) return;
        Note(port->Connect(material.Get()));
        ComPtr<IDispatch> connected;
        Note(port->get_connectedObject(&connected));
        Note(port->Disconnect());
    }

    LogDocument* document;
    LogOptions options;
    ComPtr<IStream> stream;
    ComPtr<IDispatch> material;
};

// Answers the message box in which the program reports a unit that cannot be made.
class UnitMemoryFailure : public MemoryFailure {
protected:
    UnitMemoryFailure() : before(SetMessageFunction([](const wchar_t*, const wchar_t*, UINT) -> int { return IDOK; }))
    {
        static const com::ClassEntry kClasses[] = {
            {sample::kMixerHeaterClass, com::CreateDefault<sample::MixerHeater>}};
        EXPECT_EQ(S_OK, classes.Register(kClasses));
    }
    ~UnitMemoryFailure() override { SetMessageFunction(before); }

private:
    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    MessageFunction before;
};

// If the unit cannot be made, the result is E_FAIL. With ZELT_TEST_EFFORT=20, every allocation fails once.
TEST_F(UnitMemoryFailure, OfSampledAllocationsOfAUnitsLifeEndsInStatusCodes)
{
    FailOneAfterAnother<UnitLife>(std::max(1, 20 / Effort()), 10, {E_FAIL});
}

}  // namespace
}  // namespace zelt::test
