// What is written can be read, and a recording that is cut off or damaged is read up to that place.
#include <gtest/gtest.h>

#include <cstring>

#include "recording/record_reader.h"
#include "tests/log_commands/command_runner.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

using namespace recording;

class Reading {
public:
    explicit Reading(std::string bytes) : bytes(std::move(bytes)) {}

    const Record* Next() { return records.Next(); }
    template <class T>
    const T& Take()
    {
        const Record* const record = records.Next();
        if (!record || !std::holds_alternative<T>(*record)) throw std::runtime_error("a record of another type");
        return std::get<T>(*record);
    }
    ReadEnd End() const { return records.End(); }

private:
    const std::string bytes;
    std::size_t at = 0;
    RecordReader records{[this](char* out, std::size_t count) {
        // In small pieces.
        count = std::min({count, std::size_t{7}, bytes.size() - at});
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    }};
};

void ExpectArguments(Reading& reading)
{
    const auto next = [&](const char* name, ArgumentKind kind) -> const ArgumentRecord& {
        const auto& argument = reading.Take<ArgumentRecord>();
        EXPECT_EQ(name, argument.name);
        EXPECT_EQ(kind, argument.kind);
        EXPECT_FALSE(argument.isOut);
        return argument;
    };
    EXPECT_EQ(-7, next("count", ArgumentKind::Long).value.integer);
    EXPECT_EQ(353.15, next("temperature", ArgumentKind::Double).value.real);
    EXPECT_EQ(
        "Pl\xC3\xB6"
        "cker",
        next("name", ArgumentKind::String).value.bytes);
    EXPECT_EQ(std::string(300, 'r'), next("remarks", ArgumentKind::String).value.bytes);
    EXPECT_EQ(Value::Form::RawText, next("odd", ArgumentKind::String).value.form);
    EXPECT_EQ(Value::Form::None, next("missing", ArgumentKind::String).value.form);
    const auto& stream = next("stream", ArgumentKind::NamedInterface);
    EXPECT_EQ(0x12345678u, stream.value.address);
    EXPECT_EQ("Feed", stream.shown);
    EXPECT_EQ("CapePortType", next("type", ArgumentKind::Enumeration).type);
    const auto& fractions = next("fractions", ArgumentKind::Variant);
    EXPECT_EQ(0x2005, fractions.value.type);
    ASSERT_EQ(1u, fractions.value.array.size());
    const ArrayValue& array = fractions.value.array[0];
    EXPECT_EQ(5, array.elementType);
    ASSERT_EQ(1u, array.bounds.size());
    EXPECT_EQ(1, array.bounds[0].lower);
    EXPECT_EQ(2, array.bounds[0].count);
    double values[2];
    ASSERT_EQ(sizeof values, array.numbers.size());
    std::memcpy(values, array.numbers.data(), sizeof values);
    EXPECT_EQ(0.75, values[1]);
    EXPECT_EQ(0x2005, fractions.expected);
    EXPECT_TRUE(fractions.mayBeEmpty);
    const auto& referred = next("referred", ArgumentKind::Variant);
    ASSERT_EQ(Value::Form::Variant, referred.value.form);
    EXPECT_EQ(9, referred.value.inner.at(0).integer);
    const auto& mixed = next("mixed", ArgumentKind::Variant);
    ASSERT_EQ(1u, mixed.value.array.size());
    EXPECT_FALSE(mixed.value.array[0].elementType);
    ASSERT_EQ(2u, mixed.value.array[0].elements.size());
    EXPECT_EQ(4, mixed.value.array[0].elements[0].integer);
    EXPECT_EQ("Feed", mixed.value.array[0].elements[1].bytes);
    EXPECT_FALSE(mixed.expected);
}

// The format must not change, so that existing recordings stay readable.
TEST(RecordWriting, KeepsTheFormatOfVersion1) { ExpectKeptRecording("sample_recording.zlr", SampleRecording()); }

TEST(RecordReading, GivesWhatWasWritten)
{
    Reading reading(SampleRecording());
    const auto header = reading.Take<HeaderRecord>();
    EXPECT_EQ(1u, header.version);
    EXPECT_EQ(32u, header.width);
    EXPECT_EQ("Aromatics", header.objectName);
    EXPECT_EQ("March 05, 2026, 14:07", header.startText);
    EXPECT_EQ(134'171'932'530'000'000u, header.started);
    const auto component = reading.Take<ComponentRecord>();
    EXPECT_EQ("0123456789abcdef", component.classId);
    EXPECT_EQ(1u, component.kind);
    EXPECT_EQ(0x1000u, component.pointer);
    EXPECT_EQ("2.1.0.0", component.libraryVersion);
    EXPECT_EQ(32u, component.libraryHash.size());
    EXPECT_EQ("Aromatics", component.exportedName);
    const auto object = reading.Take<ObjectRecord>();
    EXPECT_EQ(0x1000u, object.pointer);
    EXPECT_EQ(0x2000u, object.proxy);
    const auto call = reading.Take<CallRecord>();
    EXPECT_EQ(1u, call.number);
    EXPECT_EQ("ICapeThermoEquilibriumRoutine::CalcEquilibrium", call.member);
    EXPECT_EQ("Aromatics", call.object);
    EXPECT_FALSE(call.isOutward);
    ExpectArguments(reading);
    EXPECT_EQ(0x12345678u, reading.Take<ObjectRecord>().pointer);
    const auto query = reading.Take<QueryRecord>();
    EXPECT_EQ(2u, query.object);
    EXPECT_EQ("fedcba9876543210", query.interfaceId);
    EXPECT_TRUE(query.isGranted);
    const auto nested = reading.Take<CallRecord>();
    EXPECT_EQ(2u, nested.number);
    EXPECT_TRUE(nested.isOutward);
    EXPECT_EQ(10'000u, nested.start);
    EXPECT_EQ("QueryInterface for unsupported interface %s", reading.Take<SentenceRecord>().pattern);
    EXPECT_TRUE(reading.Take<ArgumentRecord>().isOut);
    const auto inner = reading.Take<ResultRecord>();
    EXPECT_EQ(0u, inner.status);
    EXPECT_EQ(30'000u, inner.duration);
    EXPECT_EQ(20'000u, inner.inside);
    EXPECT_FALSE(inner.isExplained);
    const auto outer = reading.Take<ResultRecord>();
    EXPECT_EQ(0x8004050Cu, outer.status);
    EXPECT_EQ(2'000'000u, outer.duration);
    EXPECT_EQ("did not converge", outer.description);
    ASSERT_TRUE(outer.detail);
    ASSERT_EQ(2u, outer.detail->holes.size());
    EXPECT_EQ("Solver", outer.detail->holes[1]);
    reading.Take<EndRecord>();
    EXPECT_EQ(nullptr, reading.Next());
    EXPECT_EQ(ReadEnd::Complete, reading.End());
}

int CountRecords(const std::string& bytes, ReadEnd& end)
{
    Reading reading(bytes);
    int count = 0;
    while (reading.Next()) ++count;
    end = reading.End();
    return count;
}

TEST(RecordReading, OfEveryCutGivesWholeRecordsAlone)
{
    const std::string whole = SampleRecording();
    ReadEnd end;
    const int all = CountRecords(whole, end);
    int before = 0, boundaries = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const int count = CountRecords(whole.substr(0, length), end);
        ASSERT_LE(before, count);
        before = count;
        ASSERT_TRUE(end == ReadEnd::Complete || end == ReadEnd::CutOff) << length;
        boundaries += end == ReadEnd::Complete;
    }
    EXPECT_EQ(all, before);
    // The reader does not return records that only fill a table, but the end of such a record is a boundary, too.
    EXPECT_LT(all, boundaries);
}

TEST(RecordReading, OfEveryDamagedByteEnds)
{
    const std::string whole = SampleRecording();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit);
            ReadEnd end;
            CountRecords(damaged, end);
            ASSERT_NE(ReadEnd::None, end);
        }
    }
}

TEST(RecordReading, EndsWhereNothingIsWrittenYet)
{
    const std::string whole = SampleRecording();
    ReadEnd end;
    const int all = CountRecords(whole, end);
    EXPECT_EQ(all, CountRecords(whole + std::string(100'000, '\0'), end));
    EXPECT_EQ(ReadEnd::Complete, end);
    // A program that copies records stores their first byte last.
    EXPECT_EQ(all, CountRecords(whole + '\0' + whole.substr(1), end));
    EXPECT_EQ(ReadEnd::Complete, end);
    EXPECT_EQ(all, CountRecords(whole + std::string("\x80\0", 2), end));
    EXPECT_EQ(ReadEnd::Damaged, end);
}

TEST(RecordReading, LeavesOutWhatItDoesNotKnow)
{
    // The unknown field 90, as a record and inside a known record.
    std::string record, unknown;
    protozero::pbf_writer(unknown).add_bytes(90, "later");
    protozero::pbf_writer call(record);
    std::string fields;
    protozero::pbf_writer(fields).add_bytes(90, "later");
    call.add_message(7, fields);
    std::string bytes;
    for (const std::string& one : {unknown, record}) bytes += static_cast<char>(one.size()) + one;
    Reading reading(bytes);
    reading.Take<EndRecord>();
    EXPECT_EQ(nullptr, reading.Next());
    EXPECT_EQ(ReadEnd::Complete, reading.End());
}

TEST(RecordWriting, KeepsATextOnlyOnce)
{
    std::string bytes;
    RecordWriter records([&bytes](std::string_view more) {
        bytes += more;
        return true;
    });
    const auto size = [&] {
        const std::size_t before = bytes.size();
        records.BeginCall("ICapeUtilities::Edit", "Aromatics", 0, false, 0);
        records.EndCall(0, 0, 0, nullptr);
        records.Flush();
        return bytes.size() - before;
    };
    const std::size_t first = size();
    EXPECT_EQ(first - (std::strlen("ICapeUtilities::Edit") + 3) - (std::strlen("Aromatics") + 3), size());
}

TEST(RecordWriting, EndsWhereTheDiskTakesNoMore)
{
    int taken = 0;
    RecordWriter records([&taken](std::string_view) { return ++taken < 2; });
    for (int call = 0; call < 4; ++call) {
        records.BeginCall("ICapeUtilities::Edit", "Aromatics", 0, false, 0);
        records.Flush();
    }
    EXPECT_EQ(2, taken);
    EXPECT_FALSE(records.IsWhole());
}

TEST(RecordWriting, OfAnArgumentThatThrowsLeavesNothing)
{
    std::string bytes;
    RecordWriter records([&bytes](std::string_view more) {
        bytes += more;
        return true;
    });
    EXPECT_THROW(records.Argument("a", false, ArgumentKind::Double,
                                  [](ValueWriter& value) {
                                      value.Real(1);
                                      throw std::bad_alloc();
                                  }),
                 std::bad_alloc);
    records.Argument("b", false, ArgumentKind::Double, [](ValueWriter& value) { value.Real(2); });
    records.Flush();
    Reading reading(bytes);
    const auto& argument = reading.Take<ArgumentRecord>();
    EXPECT_EQ("b", argument.name);
    EXPECT_EQ(2, argument.value.real);
    EXPECT_EQ(nullptr, reading.Next());
}

}  // namespace
}  // namespace zelt::test
