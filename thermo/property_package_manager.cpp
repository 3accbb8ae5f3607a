#include "thermo/property_package_manager.h"

#include "com/object.h"

namespace zelt {

const CLSID kPropertyPackageManagerClass = {
    0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}};

namespace {

class CPropertyPackageManager final : public com::Object {};

}  // namespace

HRESULT CreatePropertyPackageManager(REFIID iid, void** result)
{
    return com::Create<CPropertyPackageManager>(iid, result);
}

}  // namespace zelt
