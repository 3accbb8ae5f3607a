#include "type_library_text.h"

#include <windows.h>
#include <oleauto.h>
#include <comutil.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "com/failure.h"
#include "system/narrow.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

struct NamedFlag {
    USHORT flag;
    const char* name;
};

// clang-format off
// In their order in the text.
constexpr NamedFlag kParameterFlags[] = {
    {PARAMFLAG_FIN,         "in"},
    {PARAMFLAG_FOUT,        "out"},
    {PARAMFLAG_FRETVAL,     "retval"},
    {PARAMFLAG_FLCID,       "lcid"},
    {PARAMFLAG_FOPT,        "optional"},
    {PARAMFLAG_FHASDEFAULT, "default"},
};

struct NamedType {
    VARTYPE type;
    const char* name;
};

constexpr NamedType kNamedTypes[] = {
    {VT_I2,       "short"},
    {VT_I4,       "long"},
    {VT_INT,      "int"},
    {VT_R4,       "float"},
    {VT_R8,       "double"},
    {VT_BOOL,     "VARIANT_BOOL"},
    {VT_BSTR,     "BSTR"},
    {VT_VARIANT,  "VARIANT"},
    {VT_DISPATCH, "IDispatch*"},
    {VT_UNKNOWN,  "IUnknown*"},
    {VT_HRESULT,  "HRESULT"},
    {VT_VOID,     "void"},
};
// clang-format on

// Gives a description back to the type library or type information that has lent it.
template <class Owner, class Description, void (STDMETHODCALLTYPE Owner::*give)(Description*)>
class Lent {
public:
    explicit Lent(Owner* owner) : owner(owner) {}
    ~Lent()
    {
        if (description) (owner->*give)(description);
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    Description** operator&() { return &description; }
    const Description* operator->() const { return description; }
    const Description& operator*() const { return *description; }

private:
    Owner* owner;
    Description* description = nullptr;
};

using LibraryAttributes = Lent<ITypeLib, TLIBATTR, &ITypeLib::ReleaseTLibAttr>;
using TypeAttributes = Lent<ITypeInfo, TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using Function = Lent<ITypeInfo, FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using Variable = Lent<ITypeInfo, VARDESC, &ITypeInfo::ReleaseVarDesc>;

std::string TextOfGuid(const GUID& guid)
{
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return Narrow(std::wstring_view(text + 1, 36));
}

std::string Hexadecimal(unsigned value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", value);
    return text;
}

std::string Text(_bstr_t& text) { return Narrow(TextOf(text.GetBSTR())); }

std::string Quoted(_bstr_t& text) { return '"' + Text(text) + '"'; }

std::string NameOf(ITypeInfo* info)
{
    _bstr_t name;
    com::Check(info->GetDocumentation(MEMBERID_NIL, name.GetAddress(), nullptr, nullptr, nullptr));
    return Text(name);
}

std::string HelpOf(ITypeInfo* info)
{
    _bstr_t help;
    com::Check(info->GetDocumentation(MEMBERID_NIL, nullptr, help.GetAddress(), nullptr, nullptr));
    return Quoted(help);
}

std::string TypeName(ITypeInfo* info, const TYPEDESC& type);

std::string ReferredTypeName(ITypeInfo* info, HREFTYPE reference)
{
    ComPtr<ITypeInfo> referred;
    com::Check(info->GetRefTypeInfo(reference, &referred));
    TypeAttributes attributes(referred.Get());
    com::Check(referred->GetTypeAttr(&attributes));
    if (attributes->typekind == TKIND_ALIAS && attributes->tdescAlias.vt == VT_USERDEFINED) {
        ComPtr<ITypeInfo> target;
        com::Check(referred->GetRefTypeInfo(attributes->tdescAlias.hreftype, &target));
        TypeAttributes targetAttributes(target.Get());
        com::Check(target->GetTypeAttr(&targetAttributes));
        if (targetAttributes->typekind == TKIND_ENUM) return NameOf(target.Get());
    }
    return NameOf(referred.Get());
}

std::string TypeName(ITypeInfo* info, const TYPEDESC& type)
{
    if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc) + '*';
    if (type.vt == VT_USERDEFINED) return ReferredTypeName(info, type.hreftype);
    for (const NamedType& known : kNamedTypes) {
        if (known.type == type.vt) return known.name;
    }
    throw std::runtime_error(NameOf(info) + " uses the variant type " + std::to_string(type.vt));
}

std::string FlagNames(USHORT flags)
{
    std::string names;
    for (const NamedFlag& known : kParameterFlags) {
        if (!(flags & known.flag)) continue;
        if (!names.empty()) names += ',';
        names += known.name;
    }
    return names;
}

const char* InvokeName(INVOKEKIND kind)
{
    switch (kind) {
        case INVOKE_FUNC: return "method";
        case INVOKE_PROPERTYGET: return "propget";
        case INVOKE_PROPERTYPUT: return "propput";
        case INVOKE_PROPERTYPUTREF: return "propputref";
    }
    return "?";
}

// "<slot> id <dispatch id> <kind> <name>(<parameters>)"; anything unusual about the method follows, so that it shows.
std::string MethodLine(ITypeInfo* info, UINT index)
{
    Function function(info);
    com::Check(info->GetFuncDesc(index, &function));
    std::vector<BSTR> rawNames(static_cast<std::size_t>(function->cParams) + 1);
    UINT count = 0;
    com::Check(info->GetNames(function->memid, rawNames.data(), static_cast<UINT>(rawNames.size()), &count));
    std::vector<std::string> names;
    for (UINT i = 0; i < count; ++i) {
        _bstr_t name(rawNames[i], false);
        names.push_back(Text(name));
    }
    // A library need not name the value of a property put: the text calls it "rhs".
    if (names.size() < rawNames.size()) names.resize(rawNames.size(), "rhs");

    std::string line = std::to_string(function->oVft / static_cast<int>(sizeof(void*))) + " id " +
                       std::to_string(function->memid) + ' ' + InvokeName(function->invkind) + ' ' + names[0] + '(';
    for (int i = 0; i < function->cParams; ++i) {
        const ELEMDESC& parameter = function->lprgelemdescParam[i];
        if (i > 0) line += ", ";
        line += '[' + FlagNames(parameter.paramdesc.wParamFlags) + "] " + TypeName(info, parameter.tdesc) + ' ' +
                names[static_cast<std::size_t>(i) + 1];
    }
    line += ')';
    if (const std::string result = TypeName(info, function->elemdescFunc.tdesc); result != "HRESULT")
        line += " returns " + result;
    if (function->callconv != CC_STDCALL) line += " calling convention " + std::to_string(function->callconv);
    if (function->funckind != FUNC_PUREVIRTUAL) line += " function kind " + std::to_string(function->funckind);
    if (function->wFuncFlags) line += " function flags " + Hexadecimal(function->wFuncFlags);
    return line;
}

TypeText DescribeInterface(ITypeInfo* info, const TYPEATTR& attributes)
{
    // A dual interface is listed in its dispatch form, which leads to the vtable form with the slots and the results.
    ComPtr<ITypeInfo> vtable(info);
    if (attributes.typekind == TKIND_DISPATCH) {
        HREFTYPE reference = 0;
        com::Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        com::Check(info->GetRefTypeInfo(reference, vtable.ReleaseAndGetAddressOf()));
    }
    TypeAttributes vtableAttributes(vtable.Get());
    com::Check(vtable->GetTypeAttr(&vtableAttributes));
    if (vtableAttributes->typekind != TKIND_INTERFACE) throw std::runtime_error(NameOf(info) + " has no vtable form");
    if (!IsEqualGUID(vtableAttributes->guid, attributes.guid))
        throw std::runtime_error(NameOf(info) + " has two identities");

    HREFTYPE baseReference = 0;
    com::Check(vtable->GetRefTypeOfImplType(0, &baseReference));
    TypeText text;
    text.headline = "interface " + NameOf(info) + ' ' + TextOfGuid(attributes.guid) + " : " +
                    ReferredTypeName(vtable.Get(), baseReference) + " flags " + Hexadecimal(attributes.wTypeFlags) +
                    ' ' + HelpOf(info);
    for (UINT i = 0; i < vtableAttributes->cFuncs; ++i) text.lines.insert(MethodLine(vtable.Get(), i));
    return text;
}

TypeText DescribeEnumeration(ITypeInfo* info, const TYPEATTR& attributes)
{
    TypeText text;
    text.headline = "enum " + NameOf(info);
    if (!IsEqualGUID(attributes.guid, GUID_NULL)) text.headline += ' ' + TextOfGuid(attributes.guid);
    for (UINT i = 0; i < attributes.cVars; ++i) {
        Variable variable(info);
        com::Check(info->GetVarDesc(i, &variable));
        _bstr_t name;
        com::Check(info->GetDocumentation(variable->memid, name.GetAddress(), nullptr, nullptr, nullptr));
        _variant_t value;
        com::Check(VariantChangeType(&value, variable->lpvarValue, 0, VT_I4));
        text.lines.insert(Text(name) + " = " + std::to_string(V_I4(&value)));
    }
    return text;
}

TypeText DescribeType(ITypeInfo* info)
{
    TypeAttributes attributes(info);
    com::Check(info->GetTypeAttr(&attributes));
    switch (attributes->typekind) {
        case TKIND_INTERFACE:
        case TKIND_DISPATCH: return DescribeInterface(info, *attributes);
        case TKIND_ENUM: return DescribeEnumeration(info, *attributes);
        case TKIND_ALIAS:
            return {"alias " + NameOf(info) + ' ' + TextOfGuid(attributes->guid) + " = " +
                        TypeName(info, attributes->tdescAlias),
                    {}};
        case TKIND_COCLASS:
            return {"coclass " + NameOf(info) + ' ' + TextOfGuid(attributes->guid) + ' ' + HelpOf(info), {}};
        default: return {"kind " + std::to_string(attributes->typekind) + ' ' + NameOf(info), {}};
    }
}

void Add(LibraryText& library, const std::string& name, TypeText text)
{
    if (!library.types.emplace(name, std::move(text)).second) throw std::runtime_error("two types named " + name);
}

// The second word of a headline.
std::string NameIn(const std::string& headline)
{
    const std::size_t start = headline.find(' ') + 1;
    return headline.substr(start, headline.find(' ', start) - start);
}

// Replaces an enumeration's alias in a parameter by the enumeration.
std::string ResolveAliases(std::string line, const std::map<std::string, std::string>& enumerationOf)
{
    std::size_t start = 0;
    while ((start = line.find("] ", start)) != std::string::npos) {
        start += 2;
        const std::size_t length = std::min(line.find_first_of("* ", start), line.size()) - start;
        const auto alias = enumerationOf.find(line.substr(start, length));
        if (alias != enumerationOf.end()) line.replace(start, length, alias->second);
    }
    return line;
}

void ResolveAliases(LibraryText& library)
{
    std::map<std::string, std::string> enumerationOf;
    for (const auto& [name, text] : library.types) {
        const std::size_t equals = text.headline.find(" = ");
        if (!text.headline.starts_with("alias ") || equals == std::string::npos) continue;
        const auto target = library.types.find(text.headline.substr(equals + 3));
        if (target != library.types.end() && target->second.headline.starts_with("enum "))
            enumerationOf[name] = target->first;
    }
    for (auto& [name, text] : library.types) {
        std::set<std::string> resolved;
        for (const std::string& line : text.lines) resolved.insert(ResolveAliases(line, enumerationOf));
        text.lines = std::move(resolved);
    }
}

}  // namespace

LibraryText DescribeLibrary(const std::string& folder, const std::string& file)
{
    ComPtr<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(Widen(folder + '/' + file).c_str(), REGKIND_NONE, &library);
    if (FAILED(loaded))
        throw std::runtime_error(folder + '/' + file + " does not load: " + Hexadecimal(static_cast<unsigned>(loaded)));
    LibraryAttributes attributes(library.Get());
    com::Check(library->GetLibAttr(&attributes));
    _bstr_t name, help;
    com::Check(library->GetDocumentation(-1, name.GetAddress(), help.GetAddress(), nullptr, nullptr));

    LibraryText text;
    text.headline = "library " + file + ' ' + Text(name) + ' ' + TextOfGuid(attributes->guid) + ' ' +
                    std::to_string(attributes->wMajorVerNum) + '.' + std::to_string(attributes->wMinorVerNum) +
                    " lcid " + std::to_string(attributes->lcid) + ' ' + Quoted(help);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        com::Check(library->GetTypeInfo(i, &info));
        Add(text, NameOf(info.Get()), DescribeType(info.Get()));
    }
    return text;
}

std::map<std::string, LibraryText> ReadFacts(const std::string& path)
{
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::map<std::string, LibraryText> libraries;
    LibraryText* library = nullptr;
    TypeText* type = nullptr;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        const bool misplaced = line.starts_with("  ") ? !type || !type->lines.insert(line.substr(2)).second
                                                      : !line.starts_with("library ") && !library;
        if (misplaced) throw std::runtime_error("facts, line " + std::to_string(number) + ": " + line);
        if (line.starts_with("  ")) continue;
        if (line.starts_with("library ")) {
            library = &libraries[NameIn(line)];
            library->headline = line;
            type = nullptr;
        } else {
            Add(*library, NameIn(line), {line, {}});
            type = &library->types[NameIn(line)];
        }
    }
    for (auto& [name, text] : libraries) ResolveAliases(text);
    return libraries;
}

std::vector<std::string> Differences(const LibraryText& expected, const LibraryText& found)
{
    std::vector<std::string> differences;
    const auto compare = [&](const std::string& what, const std::string& left, const std::string& right) {
        if (left != right) differences.push_back(what + ": expected \"" + left + "\", found \"" + right + '"');
    };
    compare("library", expected.headline, found.headline);
    for (const auto& [name, type] : expected.types) {
        const auto match = found.types.find(name);
        if (match == found.types.end()) {
            differences.push_back(name + ": missing");
            continue;
        }
        compare(name, type.headline, match->second.headline);
        for (const std::string& line : type.lines) {
            if (!match->second.lines.contains(line)) differences.push_back(name + ": missing \"" + line + '"');
        }
        for (const std::string& line : match->second.lines) {
            if (!type.lines.contains(line)) differences.push_back(name + ": not expected \"" + line + '"');
        }
    }
    for (const auto& [name, type] : found.types) {
        if (!expected.types.contains(name)) differences.push_back(name + ": not expected \"" + type.headline + '"');
    }
    return differences;
}

}  // namespace zelt::test
