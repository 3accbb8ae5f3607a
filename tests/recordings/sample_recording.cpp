#include "tests/recordings/sample_recording.h"

#include <vector>

#include "tests/log_commands/command_runner.h"

namespace zelt::test {

using namespace recording;

namespace {

constexpr std::string_view kClassId = "0123456789abcdef", kMaterialId = "fedcba9876543210",
                           kHash = "0123456789abcdef0123456789abcdef";
constexpr std::uint16_t kI4 = 3, kR8 = 5, kBstr = 8, kSafeArray = 0x2000, kByRef = 0x4000, kVariant = 12;

void WriteArguments(RecordWriter& records)
{
    records.Argument("count", false, ArgumentKind::Long, [](ValueWriter& value) { value.Integer(-7); });
    records.Argument("temperature", false, ArgumentKind::Double, [](ValueWriter& value) { value.Real(353.15); });
    records.Argument("name", false, ArgumentKind::String, [](ValueWriter& value) {
        value.Text(
            "Pl\xC3\xB6"
            "cker");
    });
    records.Argument("remarks", false, ArgumentKind::String,
                     [](ValueWriter& value) { value.Text(std::string(300, 'r')); });
    records.Argument("odd", false, ArgumentKind::String, [](ValueWriter& value) { value.RawText("a\0b"); });
    records.Argument("missing", false, ArgumentKind::String, [](ValueWriter&) {});
    records.Argument("stream", false, ArgumentKind::NamedInterface, [](ValueWriter& value) {
        value.Pointer(0x12345678);
        value.Shown("Feed");
    });
    records.Argument("type", false, ArgumentKind::Enumeration, [](ValueWriter& value) {
        value.Integer(1);
        value.Type("CapePortType");
    });
    const double fractions[] = {0.25, 0.75};
    records.Argument("fractions", false, ArgumentKind::Variant, [&](ValueWriter& value) {
        value.Variant(kSafeArray | kR8, [&](ValueWriter& variant) {
            variant.Array([&](ValueWriter::ArrayFields& array) {
                array.add_uint32(ArrayTag::ElementSize, 8);
                array.add_uint32(ArrayTag::ElementType, kR8 + 1);
                const std::vector<std::int32_t> bounds = {1, 2};
                array.add_packed_sint32(ArrayTag::Bounds, bounds.begin(), bounds.end());
                array.add_bytes(ArrayTag::Numbers, reinterpret_cast<const char*>(fractions), sizeof fractions);
            });
        });
        value.Expected(kSafeArray | kR8, true);
    });
    records.Argument("referred", false, ArgumentKind::Variant, [&](ValueWriter& value) {
        value.Variant(kByRef | kVariant,
                      [&](ValueWriter& variant) { variant.Inner(kI4, [](ValueWriter& inner) { inner.Integer(9); }); });
    });
    records.Argument("mixed", false, ArgumentKind::Variant, [&](ValueWriter& value) {
        value.Variant(kSafeArray | kVariant, [&](ValueWriter& variant) {
            variant.Array([&](ValueWriter::ArrayFields& array) {
                array.add_uint32(ArrayTag::ElementSize, 16);
                const std::vector<std::int32_t> bounds = {0, 2};
                array.add_packed_sint32(ArrayTag::Bounds, bounds.begin(), bounds.end());
                variant.Element(array, kI4, [](ValueWriter& element) { element.Integer(4); });
                variant.Element(array, kBstr, [](ValueWriter& element) { element.Text("Feed"); });
            });
        });
    });
}

}  // namespace

void ExpectKeptRecording(const std::string& name, const std::string& output) { ExpectKept(name, output, "recordings"); }

std::string SampleRecording(bool isClosed)
{
    std::string bytes;
    RecordWriter records([&bytes](std::string_view more) {
        bytes += more;
        return true;
    });
    Header header;
    header.program = "ZELT 1.0.0";
    header.width = 32;
    header.objectName = "Aromatics";
    header.objectType = "Property Package";
    header.startText = "March 05, 2026, 14:07";
    header.started = 134'171'932'530'000'000;
    header.frequency = 10'000'000;
    header.codePage = 1252;
    records.Begin(header);
    Component component;
    component.classId = kClassId;
    component.kind = 1;
    component.exportedName = "Aromatics";
    component.pointer = 0x1000;
    component.library = "C:\\Packages\\aromatics.dll";
    component.libraryVersion = "2.1.0.0";
    component.libraryHash = kHash;
    records.Say(component);
    const std::uint32_t package = records.NewObject(0x1000, 0x2000);
    records.BeginCall("ICapeThermoEquilibriumRoutine::CalcEquilibrium", "Aromatics", package, false, 10'000);
    WriteArguments(records);
    const std::uint32_t feed = records.NewObject(0x12345678, 0x4000);
    records.Query(feed, kMaterialId, true);
    records.BeginCall("ICapeThermoMaterial::GetOverallProp", "Feed", feed, true, 10'100);
    const std::string_view hole[] = {"Feed"};
    records.Say({"QueryInterface for unsupported interface %s", hole});
    records.Argument("results", true, ArgumentKind::Double, [](ValueWriter& value) { value.Real(1e5); });
    records.EndCall(0, 10'400, 200, nullptr);
    const std::string_view words[] = {"no root", "Solver"};
    const SentenceParts detail = {"Error information: \"%n\" (source: %n)", words};
    const Failure failure = {"ECapeSolvingErrorHR", "did not converge", &detail};
    records.EndCall(0x8004050C, 30'000, 19'000, &failure);
    records.Flush();
    if (isClosed) {
        records.End();
        records.Flush();
    }
    return bytes;
}

}  // namespace zelt::test
