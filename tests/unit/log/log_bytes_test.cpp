// The raw bytes of a log: the warning after each kind of text that lost characters, and the line ends.
#include <windows.h>
#include <oleauto.h>

#include "log/value_writers.h"
#include "log/variant_writer.h"
#include "proxy_fixture.h"

namespace zelt::test {
namespace {

// The warning after a text that lost characters. The warning is never indented.
std::string Suppressed(const std::string& what)
{
    return "<warning value=\"One or more non-printable characters suppressed in above " + what +
           " (these cannot be stored in XML)\"/>\r\n";
}

class LogBytes : public LogFixture {
protected:
    // What was written since the previous call of News, byte for byte.
    std::string News()
    {
        const std::string all = ReadWhole(path);
        std::string news = all.substr(seen);
        seen = all.size();
        return news;
    }
    // Opens two nested calls, so that missing indentation shows.
    void SetUp() override
    {
        document->BeginFunc(true, "I::Outer", "Root");
        document->BeginFunc(true, "I::Inner", "Root");
        News();
    }
    static std::string Element(const char* type, const std::string& body)
    {
        return std::string("  <arg name=\"x\" direc=\"in\" type=\"") + type + "\">\r\n" + body + "  </arg>\r\n";
    }

    std::size_t seen = 0;
};

_variant_t ArrayOf(VARTYPE type, ULONG count)
{
    VARIANT value;
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = SafeArrayCreateVector(type, 0, count);
    return _variant_t(value, false);
}

TEST_F(LogBytes, TheHeaderAndTheFooter)
{
    document->EndFunc(S_OK, nullptr);
    document->EndFunc(S_OK, nullptr);
    document->Close();
    const std::string log = ReadWhole(path);
    EXPECT_TRUE(
        log.starts_with("<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n"
                        "<info value=\"ZELT Logging started at "))
        << log;
    EXPECT_TRUE(
        log.ends_with("\"/>\r\n<info value=\"Creating Root\"/>\r\n"
                      "<info value=\"Object type: kind of object\"/>\r\n"
                      "<func name=\"I::Outer\" direc=\"in\" object=\"Root\">\r\n"
                      " <func name=\"I::Inner\" direc=\"in\" object=\"Root\">\r\n"
                      " </func>\r\n</func>\r\n</zeltlogdocument>\r\n"))
        << log;
}

TEST_F(LogBytes, SimpleEntriesThatLostCharacters)
{
    document->Write(Sentence::CreatingObject, {"a\tb\r\n"});
    EXPECT_EQ("  <info value=\"Creating ab\"/>\r\n" + Suppressed("info string"), News());
    document->Write(Sentence::NullOutput, {"\x80<\xFF"});
    EXPECT_EQ("  <warning value=\"Null pointer passed for output argument &lt;\"/>\r\n" + Suppressed("warning string"),
              News());
    document->Write(Sentence::NameFailed, {"caf\xE9\x01"});
    EXPECT_EQ("  <error value=\"Failed to get name from object: caf\"/>\r\n" + Suppressed("error string"), News());
}

TEST_F(LogBytes, TheErrorOfACallThatLostCharacters)
{
    const auto package = MakeFake<FakePackage>();
    package->errorDescription = L"line\n2";
    document->EndFunc(static_cast<HRESULT>(0x8004050B), package.Get());
    EXPECT_EQ("  <error value=\"ECapeComputationHR: line2\"/>\r\n" + Suppressed("error string") + " </func>\r\n",
              News());
}

TEST_F(LogBytes, TheObjectsNameOfACallThatLostCharacters)
{
    document->BeginFunc(false, "I::\x01Third", "\xC4pfel\n");
    EXPECT_EQ("  <func name=\"I::Third\" direc=\"out\" object=\"pfel\">\r\n" + Suppressed("object name"), News());
}

TEST_F(LogBytes, AStringThatLostCharacters)
{
    const _bstr_t text(L"a\tb");
    WriteArg(*document, "x", true, static_cast<BSTR>(text));
    EXPECT_EQ(Element("string", "   <argval value=\"&quot;ab&quot;\"/>\r\n" + Suppressed("string value")), News());
    // This text has two problems; both are reported, the lost characters first.
    BSTR two = SysAllocStringLen(L"a\n\0b", 4);
    WriteArg(*document, "x", true, two);
    SysFreeString(two);
    EXPECT_EQ(Element("string", "   <argval value=\"&quot;a&quot;\"/>\r\n" + Suppressed("string value") +
                                    "  <error value=\"Not a valid BSTR value\"/>\r\n"),
              News());
}

TEST_F(LogBytes, ANamedInterfaceThatLostCharacters)
{
    auto* pointer = reinterpret_cast<IUnknown*>(static_cast<std::uintptr_t>(0xABC));
    std::string address;
    AppendPointer(address, pointer);
    WriteNamedInterfaceArg(*document, "x", true, pointer,
                           "Fe\x02"
                           "ed");
    EXPECT_EQ(Element("interface", "   <argval value=\"interface to object &quot;Feed&quot; (address " + address +
                                       ")\"/>\r\n" + Suppressed("object name")),
              News());
}

TEST_F(LogBytes, AVariantsStringThatLostCharacters)
{
    WriteArg(*document, "x", true, _variant_t(L"a\tb"));
    EXPECT_EQ(Element("VT_BSTR", "   <argval value=\"&quot;ab&quot;\"/>\r\n" + Suppressed("string value")), News());
}

TEST_F(LogBytes, StringsOfAnArrayThatLostCharacters)
{
    const _variant_t strings = ArrayOf(VT_BSTR, 3);
    auto* elements = static_cast<BSTR*>(strings.parray->pvData);
    elements[0] = SysAllocString(L"wa\tter");
    elements[1] = SysAllocString(L"plain");
    elements[2] = SysAllocString(L"\n");
    WriteArg(*document, "x", true, strings, kStrings);
    EXPECT_EQ(Element("VT_ARRAY|VT_BSTR",
                      "   <info value=\"Lower bound: 0\"/>\r\n   <info value=\"Upper bound: 2\"/>\r\n"
                      "   <argval value=\"&quot;water&quot;\"/>\r\n" +
                          Suppressed("string value") +
                          "   <argval value=\"&quot;plain&quot;\"/>\r\n   <argval value=\"&quot;&quot;\"/>\r\n" +
                          Suppressed("string value")),
              News());
}

TEST_F(LogBytes, NestedStringsThatLostCharacters)
{
    const _variant_t variants = ArrayOf(VT_VARIANT, 2);
    auto* elements = static_cast<VARIANT*>(variants.parray->pvData);
    elements[0] = _variant_t(L"7732\t").Detach();
    elements[1] = ArrayOf(VT_BSTR, 1).Detach();
    *static_cast<BSTR*>(elements[1].parray->pvData) = SysAllocString(
        L"\x07"
        L"bell");
    WriteArg(*document, "x", true, variants, kVariants);
    EXPECT_EQ(Element("VT_ARRAY|VT_VARIANT",
                      "   <info value=\"Lower bound: 0\"/>\r\n   <info value=\"Upper bound: 1\"/>\r\n"
                      "   <argval value=\"VT_BSTR\">\r\n    <argval value=\"&quot;7732&quot;\"/>\r\n" +
                          Suppressed("string value") +
                          "   </argval>\r\n"
                          "   <argval value=\"VT_ARRAY|VT_BSTR\">\r\n"
                          "    <info value=\"Lower bound: 0\"/>\r\n    <info value=\"Upper bound: 0\"/>\r\n"
                          "    <argval value=\"&quot;bell&quot;\"/>\r\n" +
                          Suppressed("string value") + "   </argval>\r\n"),
              News());
}

// Characters dropped from one text are not reported for the next.
TEST_F(LogBytes, ATextThatLostNothingSaysNothing)
{
    document->Write(Sentence::CreatingObject, {"\x01"});
    document->Write(Sentence::CreatingObject, {"whole"});
    EXPECT_EQ(
        "  <info value=\"Creating \"/>\r\n" + Suppressed("info string") + "  <info value=\"Creating whole\"/>\r\n",
        News());
}

}  // namespace
}  // namespace zelt::test
