#include "log/value_writers.h"

#include <comutil.h>
#include <emmintrin.h>

#include <limits>

#include "log/enumeration_writers.h"
#include "log/log_text.h"
#include "log/variant_writer.h"
#include "log_fixture.h"

namespace zelt::test {
namespace {

constexpr double kOldUndefined = -1.7976931348623157e308;

class ValueWritersTest : public LogFixture {
protected:
    // The element of an argument "x" at the outermost level.
    static std::string Element(const std::string& type, const std::string& lines, bool isIn = true)
    {
        return "<arg name=\"x\" direc=\"" + std::string(isIn ? "in" : "out") + "\" type=\"" + type + "\">\n" + lines +
               "</arg>\n";
    }
};

TEST_F(ValueWritersTest, Scalars)
{
    struct Row {
        const char* name;
        void (*write)(LogDocument&);
        std::string expected;
    };
    const Row rows[] = {
        {"short", [](LogDocument& d) { WriteArg(d, "x", true, short{-7}); },
         Element("short", " <argval value=\"-7\"/>\n")},
        {"long", [](LogDocument& d) { WriteArg(d, "x", false, -2147483647L - 1); },
         Element("long", " <argval value=\"-2147483648\"/>\n", false)},
        {"double", [](LogDocument& d) { WriteArg(d, "x", true, 350.25); },
         Element("double", " <argval value=\"350.25\"/>\n")},
        {"double NaN", [](LogDocument& d) { WriteArg(d, "x", true, std::numeric_limits<double>::quiet_NaN()); },
         Element("double", " <argval value=\"N/A\"/>\n")},
        {"double, the old undefined value", [](LogDocument& d) { WriteArg(d, "x", true, kOldUndefined); },
         Element("double",
                 " <argval value=\"N/A\"/>\n"
                 " <warning value=\"Old value for CapeDoubleEmpty used; should be NaN\"/>\n")},
        {"BOOL true", [](LogDocument& d) { WriteBoolArg(d, "x", true, 5); },
         Element("BOOL", " <argval value=\"TRUE\"/>\n")},
        {"BOOL false", [](LogDocument& d) { WriteBoolArg(d, "x", true, 0); },
         Element("BOOL", " <argval value=\"FALSE\"/>\n")},
        {"VARIANT_BOOL true", [](LogDocument& d) { WriteVariantBoolArg(d, "x", true, VARIANT_TRUE); },
         Element("VARIANT_BOOL", " <argval value=\"VARIANT_TRUE\"/>\n")},
        {"VARIANT_BOOL false", [](LogDocument& d) { WriteVariantBoolArg(d, "x", true, VARIANT_FALSE); },
         Element("VARIANT_BOOL", " <argval value=\"VARIANT_FALSE\"/>\n")},
        {"VARIANT_BOOL, neither", [](LogDocument& d) { WriteVariantBoolArg(d, "x", true, 1); },
         Element("VARIANT_BOOL",
                 " <argval value=\"VARIANT_TRUE\"/>\n"
                 "  <error value=\"A value other than VARIANT_TRUE is used\"/>\n")},
        {"flags 0", [](LogDocument& d) { WriteFlagsArg(d, "x", true, 0); },
         Element("int", " <argval value=\"CAPE_NO_CALCULATION\"/>\n")},
        {"flags 1", [](LogDocument& d) { WriteFlagsArg(d, "x", true, 1); }, Element("int", " <argval value=\"|\"/>\n")},
        {"flags 3", [](LogDocument& d) { WriteFlagsArg(d, "x", true, 3); }, Element("int", " <argval value=\"|\"/>\n")},
        {"flags 24", [](LogDocument& d) { WriteFlagsArg(d, "x", true, 24); },
         Element("int", " <argval value=\"|\"/>\n")},
        {"flags without a known bit", [](LogDocument& d) { WriteFlagsArg(d, "x", true, 16); },
         Element("int", " <argval value=\"\"/>\n")},
        {"interface, null", [](LogDocument& d) { WriteArg(d, "x", true, static_cast<IUnknown*>(nullptr)); },
         Element("interface", " <argval value=\"NULL\"/>\n")},
        {"named interface, null", [](LogDocument& d) { WriteNamedInterfaceArg(d, "x", true, nullptr, "n"); },
         Element("interface", " <argval value=\"NULL\"/>\n")},
    };
    std::string expected;
    for (const Row& row : rows) {
        row.write(*document);
        expected += row.expected;
        EXPECT_EQ(expected, Written()) << row.name;
    }
}

TEST_F(ValueWritersTest, IndentsBelowACall)
{
    document->BeginFunc(true, "I::M", "Root");
    WriteVariantBoolArg(*document, "x", true, 7);
    WriteArg(*document, "x", true, static_cast<eCapePortDirection>(5));
    document->EndFunc(S_OK, nullptr);
    EXPECT_EQ(
        "<func name=\"I::M\" direc=\"in\" object=\"Root\">\n"
        " <arg name=\"x\" direc=\"in\" type=\"VARIANT_BOOL\">\n"
        "  <argval value=\"VARIANT_TRUE\"/>\n"
        "    <error value=\"A value other than VARIANT_TRUE is used\"/>\n"
        " </arg>\n"
        " <arg name=\"x\" direc=\"in\" type=\"CapePortDirection\">\n"
        "    <error value=\"Invalid value for CapePortDirection\"/>\n"
        "<argval value=\"5X\"/>\n"
        " </arg>\n"
        "</func>\n",
        Written());
}

TEST_F(ValueWritersTest, Strings)
{
    const _bstr_t plain(L"x");
    WriteArg(*document, "x", true, static_cast<BSTR>(plain.copy(false)));
    WriteArg(*document, "x", true, static_cast<BSTR>(nullptr));
    const std::string first = Element("string", " <argval value=\"&quot;x&quot;\"/>\n");
    const std::string second = Element("string", " <argval value=\"&lt;NULL&gt;\"/>\n");
    EXPECT_EQ(first + second, Written());
}

TEST_F(ValueWritersTest, StringWithAnEmbeddedNulIsNoValidBstr)
{
    BSTR text = SysAllocStringLen(L"ab\0cd", 5);
    WriteArg(*document, "x", true, text);
    SysFreeString(text);
    EXPECT_EQ(Element("string", " <argval value=\"&quot;ab&quot;\"/>\n<error value=\"Not a valid BSTR value\"/>\n"),
              Written());
}

TEST_F(ValueWritersTest, StringWithALineFeedIsReportedBehindItsValue)
{
    BSTR text = SysAllocString(L"a\nb");
    WriteArg(*document, "x", true, text);
    SysFreeString(text);
    EXPECT_EQ(Element("string",
                      " <argval value=\"&quot;ab&quot;\"/>\n"
                      "<warning value=\"One or more non-printable characters suppressed in above string value"
                      " (these cannot be stored in XML)\"/>\n"),
              Written());
}

TEST_F(ValueWritersTest, InterfacePointers)
{
    auto* pointer = reinterpret_cast<IUnknown*>(static_cast<std::uintptr_t>(0xABC));
    std::string address;
    AppendPointer(address, pointer);
    WriteArg(*document, "x", true, pointer);
    WriteNamedInterfaceArg(*document, "x", true, pointer, "Feed & \x01more");
    EXPECT_EQ(Element("interface", " <argval value=\"interface pointer " + address + "\"/>\n") +
                  Element("interface",
                          " <argval value=\"interface to object &quot;Feed &amp; more&quot; (address " + address +
                              ")\"/>\n<warning value=\"One or more non-printable characters suppressed in above object"
                              " name (these cannot be stored in XML)\"/>\n"),
              Written());
}

TEST_F(ValueWritersTest, ValuesThatCannotBeReadAreReported)
{
    WriteArg(*document, "x", true, reinterpret_cast<BSTR>(static_cast<std::uintptr_t>(0x10)));
    VARIANT array;
    array.vt = VT_ARRAY | VT_BSTR;
    array.parray = reinterpret_cast<SAFEARRAY*>(static_cast<std::uintptr_t>(0x10));
    WriteArg(*document, "x", true, array);
    const std::string unreadable = " <argval value=\"&lt;unable to format value&gt;\"/>\n";
    EXPECT_EQ(Element("string", unreadable) + Element("VT_ARRAY|VT_BSTR", unreadable), Written());
}

// A component may unmask floating-point exceptions and leave them so: an ordinary comparison of a signaling NaN then raises one.
TEST_F(ValueWritersTest, SignalingNansRaiseNoFloatingPointException)
{
    const unsigned before = _mm_getcsr();
    _mm_setcsr((before & ~_MM_EXCEPT_MASK) & ~_MM_MASK_INVALID);
    WriteArg(*document, "x", true, std::numeric_limits<double>::signaling_NaN());
    _mm_setcsr(before);
    EXPECT_EQ(Element("double", " <argval value=\"N/A\"/>\n"), Written());
}

template <class E>
void WriteAll(LogDocument& document, int count)
{
    for (int value = 0; value < count; ++value) WriteArg(document, "x", true, static_cast<E>(value));
}

TEST_F(ValueWritersTest, Enumerations)
{
    struct Row {
        const char* type;
        void (*write)(LogDocument&, int);
        std::vector<const char*> names;
    };
    const Row rows[] = {
        {"CapeValidationStatus", WriteAll<eCapeValidationStatus>, {"CAPE_NOT_VALIDATED", "CAPE_INVALID", "CAPE_VALID"}},
        {"CapePortType", WriteAll<eCapePortType>, {"CAPE_MATERIAL", "CAPE_ENERGY", "CAPE_INFORMATION", "CAPE_ANY"}},
        {"CapeReactionType", WriteAll<eCapeReactionType>, {"CAPE_EQUILIBRIUM", "CAPE_KINETIC"}},
        {"CapeReactionRateBasis", WriteAll<eCapeReactionRateBasis>, {"CAPE_HOMOGENEOUS", "CAPE_HETEROGENEOUS"}},
        {"CapePortDirection", WriteAll<eCapePortDirection>, {"CAPE_INLET", "CAPE_OUTLET", "CAPE_INLET_OUTLET"}},
        {"CapeParamMode", WriteAll<eCapeParamMode>, {"CAPE_INPUT", "CAPE_OUTPUT", "CAPE_INPUT_OUTPUT"}},
        {"CapeParamType",
         WriteAll<eCapeParamType>,
         {"CAPE_REAL", "CAPE_INT", "CAPE_OPTION", "CAPE_BOOLEAN", "CAPE_ARRAY"}},
    };
    std::string expected;
    for (const Row& row : rows) {
        const int count = static_cast<int>(row.names.size());
        row.write(*document, count + 1);
        for (const char* name : row.names) {
            expected += Element(row.type, " <argval value=\"" + std::string(name) + "\"/>\n");
        }
        expected += Element(row.type, "  <error value=\"Invalid value for " + std::string(row.type) +
                                          "\"/>\n<argval value=\"" + std::to_string(count) + "X\"/>\n");
        EXPECT_EQ(expected, Written()) << row.type;
    }
}

TEST_F(ValueWritersTest, BadEnumerationValuesAreLowerCaseHexadecimal)
{
    WriteArg(*document, "x", true, static_cast<eCapePortType>(26));
    WriteArg(*document, "x", true, static_cast<eCapePortType>(-1));
    EXPECT_NE(std::string::npos, Written().find("<argval value=\"1aX\"/>"));
    EXPECT_NE(std::string::npos, Written().find("<argval value=\"ffffffffX\"/>"));
}

}  // namespace
}  // namespace zelt::test
