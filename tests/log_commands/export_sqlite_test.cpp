// log export --sqlite, of logs and recordings. The tests read the databases with SQLite itself.
#include <gtest/gtest.h>

#include <memory>

#include <sqlite3.h>

#include "command_runner.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

class Exported {
public:
    explicit Exported(const std::string& log) : target("", "database")
    {
        outcome = RunCommand({"log", "export", "--sqlite", log, "-o", target.Path()});
        sqlite3* opened = nullptr;
        EXPECT_EQ(SQLITE_OK, sqlite3_open_v2(target.Path().c_str(), &opened, SQLITE_OPEN_READONLY, nullptr));
        database.reset(opened);
    }

    // The rows of a query, with | between columns.
    std::string Ask(const std::string& query) const
    {
        std::string rows;
        char* message = nullptr;
        const auto take = [](void* context, int count, char** values, char**) {
            auto& text = *static_cast<std::string*>(context);
            for (int i = 0; i < count; ++i) text.append(i == 0 ? "" : "|").append(values[i] ? values[i] : "NULL");
            text += '\n';
            return 0;
        };
        sqlite3_exec(database.get(), query.c_str(), take, &rows, &message);
        EXPECT_EQ(nullptr, message) << message;
        return rows;
    }

    Outcome outcome;

private:
    const TemporaryLog target;
    struct Close {
        void operator()(sqlite3* open) const { sqlite3_close(open); }
    };
    std::unique_ptr<sqlite3, Close> database;
};

TEST(LogExportSqlite, HasEveryCallArgumentAndValueOfALog)
{
    for (const std::string& name : kGoldenLogs) {
        const std::string bytes = ReadBytes(GoldenLog(name));
        const Exported database(GoldenLog(name));
        EXPECT_EQ(0, database.outcome.code) << database.outcome.messages;
        EXPECT_EQ("ok\n", database.Ask("PRAGMA integrity_check"));
        EXPECT_EQ("", database.Ask("PRAGMA foreign_key_check"));
        const std::string counts = std::to_string(CountOf(bytes, "<func ")) + '|' +
                                   std::to_string(CountOf(bytes, "<arg ")) + '|' +
                                   std::to_string(CountOf(bytes, "<argval ")) + '|' +
                                   std::to_string(CountOf(bytes, "<warning ") + CountOf(bytes, "<error ")) + '\n';
        EXPECT_EQ(counts, database.Ask("SELECT (SELECT count(*) FROM calls), (SELECT count(*) FROM arguments), "
                                       "(SELECT count(*) FROM argument_values), "
                                       "(SELECT count(*) FROM messages WHERE kind <> 'info')"))
            << name;
    }
}

TEST(LogExportSqlite, TakesNoElementOutsideOfArgumentsForAValue)
{
    const TemporaryLog log(
        InLog("<func name=\"A::M\" direc=\"in\" object=\"P\">\r\n <arg name=\"n\" direc=\"in\" type=\"long\">\r\n"
              "  <argval value=\"3\"/>\r\n </arg>\r\n <note value=\"4\"/>\r\n</func>\r\n<note value=\"5\"/>\r\n"));
    EXPECT_EQ("1|1|3|3.0\n", Exported(log.Path()).Ask("SELECT * FROM argument_values"));
}

TEST(LogExportSqlite, AnswersTheCommonQuestionsOfALog)
{
    const Exported database(GoldenLog("sample_simulator_11"));
    EXPECT_EQ(
        "370|4604|ICapeThermoPropertyRoutine::CalcSinglePhaseProp|Aromatics|in|ECapeInvalidArgumentHR: The "
        "single-phase property \"colour\" is not calculated\n",
        database.Ask("SELECT * FROM failures"));
    EXPECT_EQ("ICapeThermoMaterial::SetSinglePhaseProp|out|82|0|NULL|NULL\n",
              database.Ask("SELECT * FROM members LIMIT 1"));
    EXPECT_EQ(
        "168|1489|NULL|Feed|ICapeThermoMaterial::GetOverallProp|temperature|NULL||1|353.2|353.2\n",
        database.Ask("SELECT * FROM property_values WHERE object = 'Feed' AND property = 'temperature' AND member LIKE "
                     "'%GetOverallProp' LIMIT 1"));
    EXPECT_EQ(
        "3\n",
        database.Ask("SELECT count(*) FROM property_values WHERE call = (SELECT min(call) FROM property_values WHERE "
                     "property = 'fraction')"));
    EXPECT_EQ("", database.Ask("SELECT * FROM slowest_calls"));
    EXPECT_EQ("kind|log\n", database.Ask("SELECT * FROM source"));
}

TEST(LogExportSqlite, HasTheTimesAndAllDigitsOfARecording)
{
    const TemporaryLog recording(SampleRecording(), "recorded");
    const Exported database(recording.Path());
    EXPECT_EQ(0, database.outcome.code) << database.outcome.messages;
    EXPECT_EQ(
        "1|ICapeThermoEquilibriumRoutine::CalcEquilibrium|Aromatics|in|0|2000000|1900000|1870000\n"
        "2|ICapeThermoMaterial::GetOverallProp|Feed|out|10000|30000|20000|20000\n",
        database.Ask("SELECT * FROM slowest_calls"));
    EXPECT_EQ("1|NULL|0|failed|ECapeSolvingErrorHR: did not converge\n2|1|1|ok|NULL\n",
              database.Ask("SELECT id, parent, depth, result, failure FROM calls"));
    EXPECT_EQ("0.25 0.75\n", database.Ask("SELECT text FROM argument_texts WHERE name = 'fractions'"));
    EXPECT_EQ("VT_ARRAY|VT_R8\n", database.Ask("SELECT type FROM arguments WHERE name = 'fractions'"));
    EXPECT_EQ("recording\n", database.Ask("SELECT value FROM source WHERE name = 'kind'"));
    EXPECT_EQ("2026-03-05 14:07:33 UTC\n", database.Ask("SELECT value FROM source WHERE name = 'started'"));
}

TEST(LogExportSqlite, NamesTheTypeOfEachVariantOfARecording)
{
    const struct {
        std::uint16_t type;
        const char* name;
    } rows[] = {
        {0, "VT_EMPTY"},  {1, "VT_NULL"},  {2, "VT_I2"},       {3, "VT_I4"},       {4, "VT_R4"},
        {5, "VT_R8"},     {6, "VT_CY"},    {7, "VT_DATE"},     {8, "VT_BSTR"},     {9, "VT_DISPATCH"},
        {10, "VT_ERROR"}, {11, "VT_BOOL"}, {12, "VT_VARIANT"}, {13, "VT_UNKNOWN"}, {14, "VT_DECIMAL"},
        {16, "VT_I1"},    {17, "VT_UI1"},  {18, "VT_UI2"},     {19, "VT_UI4"},     {20, "VT_I8"},
        {21, "VT_UI8"},   {22, "VT_INT"},  {23, "VT_UINT"},    {36, "VT_RECORD"},  {37, "<unknown>"},
    };
    RecordedCalls calls;
    // Each argument has the name of its type.
    calls.Call("A::B", kPackage, [&] {
        for (const auto& row : rows) {
            calls.Writer().Argument(
                row.name, false, recording::ArgumentKind::Variant,
                [&](recording::ValueWriter& value) { value.Variant(row.type, [](recording::ValueWriter&) {}); });
        }
    });
    const TemporaryLog file(calls.Whole(), "recorded");
    const Exported database(file.Path());
    EXPECT_EQ("", database.Ask("SELECT name, type FROM arguments WHERE name <> type"));
    EXPECT_EQ(std::to_string(std::size(rows)) + '\n', database.Ask("SELECT count(*) FROM arguments"));
}

TEST(LogExportSqlite, ShowsAPropertyOverTime)
{
    RecordedCalls calls;
    const std::uint32_t feed = calls.NewObject(0x3000);
    for (const double temperature : {300.0, 300.1 + 0.2}) {
        calls.Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", 1, [&] {
            calls.CallOut("ICapeThermoMaterial::GetTPFraction", feed, [&] {
                calls.Text("phaseLabel", false, "Vapor");
                calls.Real("temperature", true, temperature);
                calls.Reals("composition", true, {0.25, 0.75});
            });
        });
    }
    const TemporaryLog recording(calls.Whole(), "recorded");
    EXPECT_EQ("2|1000|Vapor|300.0\n4|5000|Vapor|300.3\n",
              Exported(recording.Path())
                  .Ask("SELECT call, start_ns, phase, number FROM property_values WHERE property = 'temperature'"));
    EXPECT_EQ(
        "2|1|0.25\n2|2|0.75\n4|1|0.25\n4|2|0.75\n",
        Exported(recording.Path()).Ask("SELECT call, place, number FROM property_values WHERE property = 'fraction'"));
}

TEST(LogExportSqlite, MarksCallsThatWereNotOver)
{
    const std::string call = "<func name=\"A::B\" direc=\"in\" object=\"o\">\r\n";
    const TemporaryLog log("<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + call +
                           "</func>\r\n" + call);
    const Exported ofLog(log.Path());
    EXPECT_EQ(1, ofLog.outcome.code);
    EXPECT_EQ("1|ok\n2|open\n", ofLog.Ask("SELECT id, result FROM calls"));
    RecordedCalls calls;
    calls.Call("A::B", 1);
    calls.Writer().BeginCall("A::B", "o", 1, false, 100);
    const TemporaryLog recording(calls.Open(), "recorded");
    const Exported ofRecording(recording.Path());
    EXPECT_EQ(1, ofRecording.outcome.code);
    EXPECT_EQ("1|ok|1000\n2|open|NULL\n", ofRecording.Ask("SELECT id, result, duration_ns FROM calls"));
}

TEST(LogExportSqlite, RefusesWhatIsNeither)
{
    const TemporaryLog none("neither", "none");
    const Outcome outcome = RunCommand({"log", "export", "--sqlite", none.Path()});
    EXPECT_EQ(3, outcome.code);
    EXPECT_EQ("", outcome.data);
    EXPECT_EQ(3, RunCommand({"log", "export", "--sqlite", "no such file"}).code);
    const TemporaryLog recording(SampleRecording(), "recorded");
    EXPECT_EQ(3, RunCommand({"log", "export", "--csv", recording.Path()}).code);
}

TEST(LogExportSqlite, HoldsNothingThatADatabaseObeys)
{
    const TemporaryLog log(
        InLog("<func name=\"A::B\" direc=\"in\" object=\"x'); DROP TABLE calls; --\">\r\n</func>\r\n"));
    EXPECT_EQ("x'); DROP TABLE calls; --\n", Exported(log.Path()).Ask("SELECT object FROM calls"));
}

}  // namespace
}  // namespace zelt::test
