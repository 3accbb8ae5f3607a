// FaultyPackage.dll: the faulty managers, the faulty package as its own class, and a class that cannot be created.
#include "samples/component/dll.h"
#include "samples/faulty/faulty_manager.h"
#include "samples/faulty/faulty_package.h"

namespace {

using namespace zelt::sample;

// {C59ABBC3-B793-4E15-880F-23C6545EFFA4}, ZeltSample.FaultyManager
constexpr CLSID kManagerClass = {0xC59ABBC3, 0xB793, 0x4E15, {0x88, 0x0F, 0x23, 0xC6, 0x54, 0x5E, 0xFF, 0xA4}};
// {39A63A6A-8251-4F4C-900C-2A592EDCA204}, ZeltSample.FaultyManagerInitialize
constexpr CLSID kInitializeClass = {0x39A63A6A, 0x8251, 0x4F4C, {0x90, 0x0C, 0x2A, 0x59, 0x2E, 0xDC, 0xA2, 0x04}};
// {4A0D07D9-9726-4E4D-A300-3B421D3276CE}, ZeltSample.FaultyManagerList
constexpr CLSID kListClass = {0x4A0D07D9, 0x9726, 0x4E4D, {0xA3, 0x00, 0x3B, 0x42, 0x1D, 0x32, 0x76, 0xCE}};
// {E4327AAB-D042-48A9-9982-4E6733816F58}, ZeltSample.FaultyPackage
constexpr CLSID kPackageClass = {0xE4327AAB, 0xD042, 0x48A9, {0x99, 0x82, 0x4E, 0x67, 0x33, 0x81, 0x6F, 0x58}};
// {2146EFBD-6469-46C9-9808-1BFF27B729A1}, ZeltSample.FaultyCreate
constexpr CLSID kCreateClass = {0x2146EFBD, 0x6469, 0x46C9, {0x98, 0x08, 0x1B, 0xFF, 0x27, 0xB7, 0x29, 0xA1}};

template <ManagerFault Fault>
HRESULT CreateManager(REFIID iid, void** result)
{
    return com::Create<FaultyManager>(iid, result, Fault);
}

HRESULT CreateNothing(REFIID, void** result)
{
    *result = nullptr;
    return E_ACCESSDENIED;
}

const com::ClassEntry kClasses[] = {
    {kManagerClass, CreateManager<ManagerFault::kNone>},
    {kInitializeClass, CreateManager<ManagerFault::kInitialize>},
    {kListClass, CreateManager<ManagerFault::kList>},
    {kPackageClass, com::CreateDefault<FaultyPackage>},
    {kCreateClass, CreateNothing},
};

const ComponentClass kRegistrations[] = {
    {kManagerClass,
     L"ZeltSample.FaultyManager",
     L"Faulty property package manager",
     L"Fails on request",
     L"1.1",
     {kPropertyPackageManager11, kCapeOpenObject}},
    {kInitializeClass,
     L"ZeltSample.FaultyManagerInitialize",
     L"Faulty manager: Initialize",
     L"Never initialises",
     L"1.1",
     {kPropertyPackageManager11, kCapeOpenObject}},
    {kListClass,
     L"ZeltSample.FaultyManagerList",
     L"Faulty manager: list",
     L"Gives a list of numbers",
     L"1.1",
     {kPropertyPackageManager11, kCapeOpenObject}},
    {kPackageClass,
     L"ZeltSample.FaultyPackage",
     L"Faulty property package",
     L"Fails on request",
     L"1.1",
     {kPropertyPackage11, kCapeOpenObject}},
    {kCreateClass,
     L"ZeltSample.FaultyCreate",
     L"Faulty class",
     L"Cannot be created",
     L"1.1",
     {kPropertyPackageManager11, kPropertyPackage11, kCapeOpenObject}},
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
