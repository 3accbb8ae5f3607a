// The exports of an in-process server. Each DLL's dll.cpp defines them with the macro, from its table of classes and its
// table of registrations.
#pragma once

#include <span>

#include "com/class_factory.h"
#include "com/server_reference.h"
#include "samples/component/registration.h"

// Declares and defines the four exports; `classes` and `registrations` are arrays.
#define SAMPLE_DLL_EXPORTS(classes, registrations)                                          \
    STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result)                     \
    {                                                                                       \
        return com::GetClassObject(classes, clsid, iid, result);                            \
    }                                                                                       \
    STDAPI DllCanUnloadNow() { return com::CountServerReferences() == 0 ? S_OK : S_FALSE; } \
    STDAPI DllRegisterServer() { return zelt::sample::RegisterComponents(registrations); }  \
    STDAPI DllUnregisterServer() { return zelt::sample::UnregisterComponents(registrations); }
