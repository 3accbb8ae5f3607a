#include "library_rows.h"

#include <wrl/client.h>

#include <algorithm>
#include <stdexcept>

#include "com/failure.h"
#include "com/type_info.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

std::string Word(const ParameterShape& parameter)
{
    switch (parameter.type) {
        case VT_BSTR: return "string";
        case VT_R8: return "double";
        case VT_R4: return "VT_R4";
        // The log leaves out the first letter of a name such as eCapePortType.
        case VT_I4: return parameter.enumeration.empty() ? "long" : parameter.enumeration.substr(1);
        case VT_I2: return "short";
        case VT_BOOL: return "VARIANT_BOOL";
        case VT_DISPATCH: return "interface";
        case VT_VARIANT: return "any";
        default: throw std::runtime_error("no word for the type of " + parameter.name);
    }
}

}  // namespace

std::vector<const InterfaceShape*> AllInterfaces()
{
    std::vector<const InterfaceShape*> shapes;
    for (int number = 1; number <= com::CountTypeLibraries(); ++number) {
        ComPtr<ITypeLib> library;
        com::Check(com::LoadModuleTypeLibrary(number, &library));
        for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
            TYPEKIND kind;
            com::Check(library->GetTypeInfoType(i, &kind));
            if (kind != TKIND_DISPATCH) continue;
            ComPtr<ITypeInfo> info;
            com::Check(library->GetTypeInfo(i, &info));
            TYPEATTR* attributes = nullptr;
            com::Check(info->GetTypeAttr(&attributes));
            const IID iid = attributes->guid;
            info->ReleaseTypeAttr(attributes);
            shapes.push_back(ShapeOf(iid));
        }
    }
    return shapes;
}

bool HasRows(const InterfaceShape& shape, const std::vector<TableClass>& table)
{
    return shape.name != "ICapeCollection" && std::any_of(table.begin(), table.end(), [&](const TableClass& one) {
               return std::any_of(one.rows.begin(), one.rows.end(),
                                  [&](const TableRow& row) { return row.interfaceName == shape.name; });
           });
}

bool IsWithheld(const InterfaceShape& shape)
{
    return shape.name == "ECapeOutsideSolverScope" || shape.name == "ECapeHessianInfoNotAvailable";
}

TableRow LibraryRow(const InterfaceShape& shape, const MethodShape& method)
{
    TableRow row;
    row.interfaceName = shape.name;
    row.method = method.name;
    row.logged = shape.name + "::" + method.name;
    for (const ParameterShape& parameter : method.parameters) {
        TableStep step;
        const bool isNewValue = method.kind == INVOKE_PROPERTYPUT && &parameter == &method.parameters.back();
        step.name =
            isNewValue || parameter.name.empty() ? method.name.substr(method.name.find('_') + 1) : parameter.name;
        step.isLoggedIn = !parameter.isOut;
        step.type = Word(parameter);
        // A value without a name is logged as a number.
        step.secondName = parameter.enumeration.empty() || !parameter.secondName.empty() ? parameter.secondName : "1";
        row.steps.push_back(step);
    }
    return row;
}

TableClass LibraryClass(const std::vector<TableClass>& table)
{
    TableClass all;
    all.name = "the library";
    all.isIn = true;
    for (const InterfaceShape* shape : AllInterfaces()) {
        if (shape->name == "IOriginalObject" || IsWithheld(*shape) || HasRows(*shape, table)) continue;
        for (const MethodShape& method : shape->methods) all.rows.push_back(LibraryRow(*shape, method));
        if (!shape->methods.empty()) continue;
        TableRow only;
        only.interfaceName = shape->name;
        all.rows.push_back(only);
    }
    return all;
}

}  // namespace zelt::test
