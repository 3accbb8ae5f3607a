// The outermost calls of a recording in outline: for each call, the facts that decide whether a later call needs it. The calls
// themselves stay in the file.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ctl/recording/trimming/member_effect.h"
#include "recording/record.h"

namespace zelt::ctl {

struct OutlinedCall {
    std::uint64_t first = 0, last = 0;  // the numbers of the call and of the last one inside of it
    Effect effect = Effect::Remembers;
    std::uint32_t group = 0;  // calls of one group replace each other, see MemberEffect::group; 0 for none
    bool hasEnded = false, hasFailed = false, makesComponent = false;
    bool asksAnew = false;                 // the component asks the simulator something new that it may remember
    std::vector<std::uint32_t> objects;    // the numbers of all objects that are called
    std::vector<std::uint32_t> called;     // those of them that belong to the component
    std::vector<std::uint64_t> given;      // pointers that the component gave to the simulator
    std::vector<std::uint64_t> mentioned;  // pointers in all arguments
};

class CallOutline {
public:
    void Take(const recording::Record& record);

    const std::vector<OutlinedCall>& Calls() const { return calls; }
    // In the order of their numbers, which begin with 1.
    const std::vector<recording::ObjectRecord>& Objects() const { return objects; }
    // The numbers of the calls that failed, in the order in which they began.
    std::vector<std::uint64_t> Failures() const;
    std::uint64_t Count() const { return count; }

private:
    struct OpenCall {
        std::uint64_t number;
        bool isOutward;
    };

    void Take(const recording::CallRecord& call);
    void Take(const recording::ArgumentRecord& argument);
    void Take(const recording::ResultRecord& result);

    std::vector<OutlinedCall> calls;
    std::vector<recording::ObjectRecord> objects;
    std::vector<OpenCall> open;
    std::vector<std::uint64_t> failures;
    std::map<std::string, std::uint32_t, std::less<>> groups;
    std::set<std::string> asked;
    std::uint64_t count = 0;
};

}  // namespace zelt::ctl
