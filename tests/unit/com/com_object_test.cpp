#include "com/object.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "com/class_factory.h"
#include "com/server_reference.h"

namespace {

using Microsoft::WRL::ComPtr;

// The objects here offer INumber; none offers IOther.
struct INumber : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Number(long* number) = 0;
};
struct IOther : IUnknown {};

}  // namespace

__CRT_UUID_DECL(INumber, 0x5D9C1B2E, 0x0C5B, 0x4B8B, 0x9B, 0x0F, 0x6F, 0x1B, 0x8E, 0x0A, 0x3D, 0x41)
__CRT_UUID_DECL(IOther, 0x5D9C1B2E, 0x0C5B, 0x4B8B, 0x9B, 0x0F, 0x6F, 0x1B, 0x8E, 0x0A, 0x3D, 0x42)

namespace {

class Sample final : public com::Object {
public:
    int finalReleases = 0;
    bool resurrect = false;
    static inline bool destroyed = false;
    static inline IUnknown* kept = nullptr;
    ~Sample() override { destroyed = true; }

protected:
    void FinalRelease() override
    {
        ++finalReleases;
        if (resurrect) {
            AddRef();
            kept = this;
        }
    }

private:
    struct NumberPart final : com::Part<INumber> {
        using Part::Part;
        STDMETHOD(Number)(long* number) override
        {
            *number = 42;
            return S_OK;
        }
    } number{*this};
};

TEST(ComObject, AnswersEveryInterfaceWithOneIdentity)
{
    ComPtr<INumber> number;
    ASSERT_EQ(S_OK, com::Create<Sample>(__uuidof(INumber), &number));
    long value = 0;
    EXPECT_EQ(S_OK, number->Number(&value));
    EXPECT_EQ(42, value);

    ComPtr<IUnknown> identity, again;
    ASSERT_EQ(S_OK, number.As(&identity));
    ComPtr<INumber> other;
    ASSERT_EQ(S_OK, identity.As(&other));
    ASSERT_EQ(S_OK, other.As(&again));
    EXPECT_EQ(identity.Get(), again.Get());
}

TEST(ComObject, RefusesWhatItDoesNotOffer)
{
    ComPtr<IUnknown> object;
    ASSERT_EQ(S_OK, com::Create<Sample>(IID_IUnknown, &object));
    void* result = &result;
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(__uuidof(IOther), &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(IID_IDispatch, &result));
    EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr));
}

TEST(ComObject, HoldsOneServerReferenceUntilItIsDestroyed)
{
    const long before = com::CountServerReferences();
    ComPtr<IUnknown> object;
    ASSERT_EQ(S_OK, com::Create<Sample>(IID_IUnknown, &object));
    EXPECT_EQ(before + 1, com::CountServerReferences());
    object.Reset();
    EXPECT_EQ(before, com::CountServerReferences());
}

TEST(ComObject, SurvivesAReferenceTakenDuringFinalRelease)
{
    auto* sample = new Sample;
    sample->resurrect = true;
    sample->AddRef();
    Sample::destroyed = false;
    EXPECT_EQ(1u, sample->Release());
    EXPECT_FALSE(Sample::destroyed);
    EXPECT_EQ(1, sample->finalReleases);
    EXPECT_EQ(0u, Sample::kept->Release());
    EXPECT_TRUE(Sample::destroyed);
}

// Code that a constructor calls may query the new object, which has no reference yet. A refused query must not destroy
// it.
TEST(ComObject, SurvivesAQueryBeforeItsFirstReference)
{
    auto* sample = new Sample;
    Sample::destroyed = false;
    void* result = &result;
    EXPECT_EQ(E_NOINTERFACE, sample->QueryInterface(__uuidof(IOther), &result));
    EXPECT_EQ(nullptr, result);
    ASSERT_FALSE(Sample::destroyed);
    EXPECT_EQ(0, sample->finalReleases);
    ComPtr<INumber> number;
    ASSERT_EQ(S_OK, sample->QueryInterface(__uuidof(INumber), &number));
    EXPECT_FALSE(Sample::destroyed);
    number.Reset();
    EXPECT_TRUE(Sample::destroyed);
}

TEST(ClassFactory, LocksTheServerAndRefusesAggregation)
{
    static constexpr CLSID kClass = {0x1, 0x2, 0x3, {4, 5, 6, 7, 8, 9, 10, 11}};
    static constexpr CLSID kUnknownClass = {0x9, 0x2, 0x3, {4, 5, 6, 7, 8, 9, 10, 11}};
    const com::ClassEntry classes[] = {{kClass, com::CreateDefault<Sample>}};
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, com::GetClassObject(classes, kClass, IID_IClassFactory, &factory));
    const long before = com::CountServerReferences();
    factory->LockServer(TRUE);
    EXPECT_EQ(before + 1, com::CountServerReferences());
    factory->LockServer(FALSE);
    EXPECT_EQ(before, com::CountServerReferences());

    ComPtr<INumber> number;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, __uuidof(INumber), &number));
    ComPtr<IUnknown> aggregated;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(number.Get(), IID_IUnknown, &aggregated));
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, com::GetClassObject(classes, kUnknownClass, IID_IClassFactory, &factory));
}

TEST(ClassFactory, RefusesToAnswerIntoNothing)
{
    static constexpr CLSID kClass = {0x1, 0x2, 0x3, {4, 5, 6, 7, 8, 9, 10, 11}};
    const com::ClassEntry classes[] = {{kClass, com::CreateDefault<Sample>}};
    EXPECT_EQ(E_POINTER, com::GetClassObject(classes, kClass, IID_IClassFactory, nullptr));
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, com::GetClassObject(classes, kClass, IID_IClassFactory, &factory));
    EXPECT_EQ(E_POINTER, factory->QueryInterface(IID_IUnknown, nullptr));
    EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, __uuidof(INumber), nullptr));
}

}  // namespace
