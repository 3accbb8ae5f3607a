#include "log/variant_type.h"

namespace zelt {
namespace {

struct TypeName {
    VARTYPE type;
    std::string_view name;
};

// clang-format off
constexpr TypeName kFlags[] = {
    {VT_ARRAY, "VT_ARRAY|"}, {VT_VECTOR, "VT_VECTOR|"}, {VT_BYREF, "VT_BYREF|"}, {VT_RESERVED, "VT_RESERVED|"},
};

constexpr TypeName kBaseTypes[] = {
    {VT_EMPTY,            "VT_EMPTY"},            {VT_NULL,           "VT_NULL"},
    {VT_I2,               "VT_I2"},               {VT_I4,             "VT_I4"},
    {VT_R4,               "VT_R4"},               {VT_R8,             "VT_R8"},
    {VT_CY,               "VT_CY"},               {VT_DATE,           "VT_DATE"},
    {VT_BSTR,             "VT_BSTR"},             {VT_DISPATCH,       "VT_DISPATCH"},
    {VT_ERROR,            "VT_ERROR"},            {VT_BOOL,           "VT_BOOL"},
    {VT_VARIANT,          "VT_VARIANT"},          {VT_UNKNOWN,        "VT_UNKNOWN"},
    {VT_DECIMAL,          "VT_DECIMAL"},          {VT_I1,             "VT_I1"},
    {VT_UI1,              "VT_UI1"},              {VT_UI2,            "VT_UI2"},
    {VT_UI4,              "VT_UI4"},              {VT_I8,             "VT_I8"},
    {VT_UI8,              "VT_UI8"},              {VT_INT,            "VT_INT"},
    {VT_UINT,             "VT_UINT"},             {VT_VOID,           "VT_VOID"},
    {VT_HRESULT,          "VT_HRESULT"},          {VT_PTR,            "VT_PTR"},
    {VT_SAFEARRAY,        "VT_SAFEARRAY"},        {VT_CARRAY,         "VT_CARRAY"},
    {VT_USERDEFINED,      "VT_USERDEFINED"},      {VT_LPSTR,          "VT_LPSTR"},
    {VT_LPWSTR,           "VT_LPWSTR"},           {VT_RECORD,         "VT_RECORD"},
    {VT_INT_PTR,          "VT_INT_PTR"},          {VT_UINT_PTR,       "VT_UINT_PTR"},
    {VT_FILETIME,         "VT_FILETIME"},         {VT_BLOB,           "VT_BLOB"},
    {VT_STREAM,           "VT_STREAM"},           {VT_STORAGE,        "VT_STORAGE"},
    {VT_STREAMED_OBJECT,  "VT_STREAMED_OBJECT"},  {VT_STORED_OBJECT,  "VT_STORED_OBJECT"},
    {VT_BLOB_OBJECT,      "VT_BLOB_OBJECT"},      {VT_CF,             "VT_CF"},
    {VT_CLSID,            "VT_CLSID"},            {VT_VERSIONED_STREAM, "VT_VERSIONED_STREAM"},
    {VT_BSTR_BLOB,        "VT_BSTR_BLOB"},
};
// clang-format on

template <class Text>
void Append(Text& out, VARTYPE type, const char* unknown)
{
    for (const TypeName& flag : kFlags) {
        if (type & flag.type) out += flag.name;
    }
    const VARTYPE base = type & VT_TYPEMASK;
    for (const TypeName& known : kBaseTypes) {
        if (known.type == base) {
            out += known.name;
            return;
        }
    }
    out += std::string_view(unknown);
}

}  // namespace

std::string VariantTypeName(VARTYPE type, const char* unknown)
{
    std::string name;
    Append(name, type, unknown);
    return name;
}

void AppendVariantTypeName(EntryText& out, VARTYPE type, const char* unknown) { Append(out, type, unknown); }

}  // namespace zelt
