// The proxy classes by name, as the table of proxied methods calls them.
#pragma once

#include <wrl/client.h>

#include <stdexcept>
#include <string>

#include "thermo/material_object.h"
#include "thermo/material_template.h"
#include "thermo/property_package_10.h"
#include "thermo/property_package_11.h"
#include "thermo/simulation_context.h"
#include "unit/parameter.h"
#include "unit/parameter_collection.h"
#include "unit/parameter_spec.h"
#include "unit/reaction_object.h"
#include "unit/reaction_package_10.h"

namespace zelt::test {

struct ProxyClass {
    const char* name;
    bool isRoot;
    Microsoft::WRL::ComPtr<CapeOpenBase> (*make)(ThermoVersion);  // the version is a material object's
    bool (*isInstance)(const CapeOpenBase&);
};

template <class T>
ProxyClass DescribeProxyClass(const char* name, bool isRoot)
{
    return {name, isRoot,
            [](ThermoVersion version) {
                if constexpr (std::is_constructible_v<T, ThermoVersion>) {
                    return Microsoft::WRL::ComPtr<CapeOpenBase>(new T(version));
                } else {
                    return static_cast<void>(version), Microsoft::WRL::ComPtr<CapeOpenBase>(new T);
                }
            },
            [](const CapeOpenBase& proxy) { return dynamic_cast<const T*>(&proxy) != nullptr; }};
}

// Throws std::runtime_error for another name.
inline const ProxyClass& FindProxyClass(const std::string& name)
{
    static const ProxyClass kClasses[] = {
        DescribeProxyClass<CMaterialObject>("CMaterialObject", false),
        DescribeProxyClass<CPropertyPackage11>("CPropertyPackage11", true),
        DescribeProxyClass<CPropertyPackage10>("CPropertyPackage10", true),
        DescribeProxyClass<CSimulationContext>("CSimulationContext", false),
        DescribeProxyClass<CMaterialTemplate>("CMaterialTemplate", false),
        DescribeProxyClass<CParameterCollection>("CParameterCollection", false),
        DescribeProxyClass<CParameter>("CParameter", false),
        DescribeProxyClass<CParameterSpec>("CParameterSpec", false),
        DescribeProxyClass<CReactionPackage10>("CReactionPackage10", true),
        DescribeProxyClass<CReactionObject>("CReactionObject", false),
    };
    for (const ProxyClass& known : kClasses) {
        if (name == known.name) return known;
    }
    throw std::runtime_error("no proxy class " + name);
}

}  // namespace zelt::test
