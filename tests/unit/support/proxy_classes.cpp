#include "proxy_classes.h"

#include <stdexcept>
#include <string>
#include <type_traits>

#include "thermo/material_object.h"
#include "thermo/material_template.h"
#include "thermo/property_package_10.h"
#include "thermo/property_package_11.h"
#include "thermo/simulation_context.h"
#include "parameters/parameter.h"
#include "parameters/parameter_collection.h"
#include "parameters/parameter_spec.h"
#include "unit/port_collection.h"
#include "reactions/reaction_object.h"
#include "reactions/reaction_package_10.h"
#include "unit/unit_operation.h"
#include "unit/unit_port.h"

namespace zelt::test {
namespace {

template <class T>
ProxyClass DescribeProxyClass(const char* name, Origin origin)
{
    return {name, origin,
            [](ThermoVersion version) {
                if constexpr (std::is_constructible_v<T, ThermoVersion>) {
                    return Microsoft::WRL::ComPtr<CapeOpenBase>(new T(version));
                } else {
                    return static_cast<void>(version), Microsoft::WRL::ComPtr<CapeOpenBase>(new T);
                }
            },
            [](const CapeOpenBase& proxy) { return dynamic_cast<const T*>(&proxy) != nullptr; }};
}

}  // namespace

const ProxyClass& FindProxyClass(std::string_view name)
{
    static const ProxyClass kClasses[] = {
        DescribeProxyClass<CMaterialObject>("CMaterialObject", Origin::Given),
        DescribeProxyClass<CPropertyPackage11>("CPropertyPackage11", Origin::Root),
        DescribeProxyClass<CPropertyPackage10>("CPropertyPackage10", Origin::Root),
        DescribeProxyClass<CSimulationContext>("CSimulationContext", Origin::Given),
        DescribeProxyClass<CMaterialTemplate>("CMaterialTemplate", Origin::Given),
        DescribeProxyClass<CParameterCollection>("CParameterCollection", Origin::Returned),
        DescribeProxyClass<CParameter>("CParameter", Origin::Returned),
        DescribeProxyClass<CParameterSpec>("CParameterSpec", Origin::Returned),
        DescribeProxyClass<CReactionPackage10>("CReactionPackage10", Origin::Root),
        DescribeProxyClass<CReactionObject>("CReactionObject", Origin::Given),
        DescribeProxyClass<CUnitOperation>("CUnitOperation", Origin::Root),
        DescribeProxyClass<CPortCollection>("CPortCollection", Origin::Returned),
        DescribeProxyClass<CUnitPort>("CUnitPort", Origin::Returned),
    };
    for (const ProxyClass& known : kClasses) {
        if (name == known.name) return known;
    }
    throw std::runtime_error("no proxy class " + std::string(name));
}

}  // namespace zelt::test
