// Shared by the tests that make our own allocations fail, one after another. A scenario runs repeatedly, each time with
// another failing allocation; every call must end with a status code, no reference or memory may be lost, and the log
// must stay well-formed.
#pragma once

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "checked_heap.h"
#include "guard/calls_in_progress.h"
#include "proxy_fixture.h"
#include "log_reader/log_reader.h"

namespace zelt::test {

class NoErrors final : public LogSink {
public:
    void Begin(const LogEvent&) override {}
    void ParseError(int line) override { ADD_FAILURE() << "line " << line; }
};

// The results of a scenario's calls, in order.
class Answered {
public:
    // True for success.
    bool Note(HRESULT result)
    {
        answers.push_back(result);
        return SUCCEEDED(result);
    }
    const std::vector<HRESULT>& Answers() const { return answers; }

protected:
    // Reserves the memory now, so that nothing is allocated while allocations fail.
    Answered() { answers.reserve(200); }

    // Null if there is no memory for it.
    ComPtr<CPropertyPackage11> MakeProxy(IUnknown* package, LogDocument* document)
    {
        ComPtr<CPropertyPackage11> proxy;
        const HRESULT made = com::NoThrow([&] {
            proxy = ComPtr<CPropertyPackage11>(new CPropertyPackage11);
            proxy->AttachAsRoot(package, document, "Pack");
            return S_OK;
        });
        return Note(made) ? proxy : nullptr;
    }

private:
    std::vector<HRESULT> answers;
};

class MemoryFailure : public testing::Test {
protected:
    MemoryFailure()
    {
        InstallWrappers();
        PrepareLogReader();
        options.promptOpenLog = false;
    }

    // Runs the scenario, with or without its own log. `successes` allocations succeed and the next one fails; with a negative
    // number, none fails. Returns whether one has failed.
    template <class Scenario>
    bool RunOnce(bool isLogged, long successes)
    {
        SCOPED_TRACE(successes);
        const std::wstring path = TemporaryPath();
        LogFile file;
        EXPECT_EQ(0, file.Open(path));
        auto* document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
        document->Hold();
        bool hasFailed = false;
        {
            Scenario scenario(isLogged ? document : nullptr);
            FailAllocationAfter(successes);
            scenario.Run();
            hasFailed = FailAllocationAfter(-1);
            answers = scenario.Answers();
        }
        document->LetGo();
        NoErrors log;
        const int descriptor = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
        EXPECT_EQ(LogReadResult::Complete, ReadLog(descriptor, log));
        _close(descriptor);
        DeleteFileW(path.c_str());
        return hasFailed;
    }

    // Runs the scenario repeatedly, first with a log, then without. After three runs without a failure, one allocation fails in
    // each run: every `step`-th allocation has its turn, until a run ends without a failure. More than `least` runs must have
    // one. Calls may also return the results in `others`.
    template <class Scenario>
    void FailOneAfterAnother(long step, int least, const std::vector<HRESULT>& others = {})
    {
        for (const bool isLogged : {true, false}) {
            SCOPED_TRACE(isLogged ? "logged" : "not logged");
            RunOnce<Scenario>(isLogged, -1);  // creates what is created only once and kept
            const std::vector<HRESULT> usual = answers;
            RunOnce<Scenario>(isLogged, -1);
            const HeapInUse before = HeapOfOperatorNew();
            RunOnce<Scenario>(isLogged, -1);
            ASSERT_EQ(before.blocks, HeapOfOperatorNew().blocks) << "memory is lost without any failure";
            int failures = 0, unnoticed = 0;
            long successes = step / 2;
            for (; RunOnce<Scenario>(isLogged, successes); successes += step) {
                SCOPED_TRACE(successes);
                ++failures;
                unnoticed += answers == usual;
                for (const HRESULT answer : answers) {
                    const bool isOfTheStandard = (static_cast<DWORD>(answer) & 0xFFFFFF00) == 0x80040500;
                    EXPECT_TRUE(answer == E_OUTOFMEMORY || answer == E_UNEXPECTED || isOfTheStandard ||
                                std::find(usual.begin(), usual.end(), answer) != usual.end() ||
                                std::find(others.begin(), others.end(), answer) != others.end())
                        << std::hex << answer;
                }
                EXPECT_EQ(before.blocks, HeapOfOperatorNew().blocks) << "memory is lost";
                if (testing::Test::HasFailure()) return;
            }
            std::printf("%d of about %ld allocations failed, after %d of them all calls answered as usual\n", failures,
                        successes, unnoticed);
            EXPECT_LT(least, failures);
            // Without a log, most failures must change the result of a call. With a log, the failing allocation may be one for
            // the log, which loses an entry instead.
            if (!isLogged) {
                EXPECT_LT(unnoticed * 2, failures);
            }
        }
    }

    LogOptions options;
    std::vector<HRESULT> answers;  // of the last run
};

}  // namespace zelt::test
