#include "tests/recordings/recorded_calls.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "recording/record_reader.h"
#include "tests/recordings/element_types.h"

namespace zelt::test {

using namespace recording;

namespace {

constexpr std::uint64_t kMicrosecond = 10;  // ticks

}  // namespace

RecordedCalls::RecordedCalls(bool hasComponent)
    : writer([this](std::string_view more) {
          bytes += more;
          return true;
      })
{
    Header header;
    header.program = "ZELT 1.0.0";
    header.width = 32;
    header.objectName = "Aromatics";
    header.objectType = "Property Package";
    header.startText = "March 05, 2026, 14:07";
    header.started = 134'171'932'530'000'000;
    header.frequency = 10'000'000;
    header.codePage = 1252;
    header.settings = "PromptOpenLog=0 PRAVIKUnit={2FD53BB5-1013-418D-BAB6-15DF8AD606A6} RecordCalls=1";
    writer.Begin(header);
    if (hasComponent) MakeComponent();
    NewObject(0x1000, 0x2000);
    names.back() = "Aromatics";
}

void RecordedCalls::MakeComponent()
{
    Component component;
    component.classId = "0123456789abcdef";
    component.exportedName = "Aromatics";
    component.name = "Aromatics of the plant";
    component.pointer = 0x1000;
    component.library = "C:\\Packages\\aromatics.dll";
    component.libraryVersion = "2.1.0.0";
    component.libraryHash = "0123456789abcdef0123456789abcdef";
    writer.Say(component);
}

std::uint32_t RecordedCalls::NewObject(std::uint64_t pointer, std::uint64_t proxy)
{
    names.push_back("Object " + std::to_string(names.size() + 1));
    return writer.NewObject(pointer, proxy);
}

void RecordedCalls::Query(std::uint32_t object, bool isGranted, std::string_view interfaceId)
{
    writer.Query(object, interfaceId, isGranted);
}

void RecordedCalls::Make(std::string_view member, std::uint32_t object, bool isOutward,
                         const std::function<void()>& inside, std::uint32_t status)
{
    const std::uint64_t begin = now += kMicrosecond;
    writer.BeginCall(member, names.at(object - 1), object, isOutward, begin);
    if (inside) inside();
    now += kMicrosecond;
    const Failure failure = {"ECapeUnknownHR", "no answer", nullptr};
    writer.EndCall(status, now, now - begin, status & 0x80000000u ? &failure : nullptr, std::exchange(stream, {}));
}

void RecordedCalls::Call(std::string_view member, std::uint32_t object, const std::function<void()>& inside,
                         std::uint32_t status)
{
    Make(member, object, false, inside, status);
}

void RecordedCalls::CallOut(std::string_view member, std::uint32_t object, const std::function<void()>& inside,
                            std::uint32_t status)
{
    Make(member, object, true, inside, status);
}

void RecordedCalls::Pointer(std::string_view name, bool isOut, std::uint64_t address)
{
    writer.Argument(name, isOut, ArgumentKind::Interface, [&](ValueWriter& value) { value.Pointer(address); });
}

void RecordedCalls::Real(std::string_view name, bool isOut, double number)
{
    writer.Argument(name, isOut, ArgumentKind::Double, [&](ValueWriter& value) { value.Real(number); });
}

void RecordedCalls::Text(std::string_view name, bool isOut, std::string_view text)
{
    writer.Argument(name, isOut, ArgumentKind::String, [&](ValueWriter& value) { value.Text(text); });
}

void RecordedCalls::Reals(std::string_view name, bool isOut, const std::vector<double>& numbers)
{
    writer.Argument(name, isOut, ArgumentKind::Variant, [&](ValueWriter& value) {
        value.Variant(kArray | kReal, [&](ValueWriter& variant) {
            variant.Array([&](ValueWriter::ArrayFields& array) {
                array.add_uint32(ArrayTag::Features, 0x80);
                array.add_uint32(ArrayTag::ElementSize, sizeof(double));
                array.add_uint32(ArrayTag::ElementType, kReal + 1);
                const std::vector<std::int32_t> bounds = {0, static_cast<std::int32_t>(numbers.size())};
                array.add_packed_sint32(ArrayTag::Bounds, bounds.begin(), bounds.end());
                array.add_bytes(ArrayTag::Numbers, reinterpret_cast<const char*>(numbers.data()),
                                numbers.size() * sizeof(double));
            });
        });
    });
}

void RecordedCalls::Texts(std::string_view name, bool isOut, const std::vector<std::string>& texts)
{
    writer.Argument(name, isOut, ArgumentKind::Variant, [&](ValueWriter& value) {
        value.Variant(kArray | kText, [&](ValueWriter& variant) {
            variant.Array([&](ValueWriter::ArrayFields& array) {
                array.add_uint32(ArrayTag::Features, 0x100);
                array.add_uint32(ArrayTag::ElementSize, 4);
                const std::vector<std::int32_t> bounds = {0, static_cast<std::int32_t>(texts.size())};
                array.add_packed_sint32(ArrayTag::Bounds, bounds.begin(), bounds.end());
                for (const std::string& text : texts) {
                    variant.Element(array, kText, [&](ValueWriter& element) { element.Text(text); });
                }
            });
        });
    });
}

void RecordedCalls::Sentence(std::string_view pattern, const std::vector<std::string_view>& holes)
{
    writer.Say(SentenceParts{pattern, holes});
}

std::string RecordedCalls::Open()
{
    writer.Flush();
    return bytes;
}

std::string RecordedCalls::Whole()
{
    writer.End();
    return Open();
}

std::vector<std::string> CallsOf(const std::string& recording)
{
    std::size_t at = 0, depth = 0;
    RecordReader records([&](char* out, std::size_t count) {
        count = std::min(count, recording.size() - at);
        std::memcpy(out, recording.data() + at, count);
        at += count;
        return count;
    });
    std::vector<std::string> calls;
    while (const Record* record = records.Next()) {
        if (const auto* call = std::get_if<CallRecord>(record)) {
            calls.push_back(std::string(2 * depth++, ' ') + (call->isOutward ? "<" : "") + std::string(call->member));
        } else if (std::holds_alternative<ResultRecord>(*record)) {
            --depth;
        }
    }
    return calls;
}

}  // namespace zelt::test
