// Copies the records of a recording, all or some, into another recording, which gets its own tables. Times become nanoseconds.
#pragma once

#include <cstdint>
#include <vector>

#include "recording/record.h"
#include "recording/record_writer.h"

namespace zelt::recording {

class RecordCopier {
public:
    explicit RecordCopier(RecordWriter& writer) : writer(writer) {}

    // Takes all records, in order. Records that are not kept still affect the times of later calls and the numbers of objects.
    // A call that is kept must be kept with its arguments, sentences and result.
    void Take(const Record& record, bool isKept = true);

private:
    void Take(const HeaderRecord& header, bool isKept);
    void Take(const ComponentRecord& component, bool isKept);
    void Take(const ObjectRecord& object, bool isKept);
    void Take(const QueryRecord& query, bool isKept);
    void Take(const CallRecord& call, bool isKept);
    void Take(const ArgumentRecord& argument, bool isKept);
    void Take(const SentenceRecord& sentence, bool isKept);
    void Take(const ResultRecord& result, bool isKept);
    void Take(const EndRecord& end, bool isKept);
    // The number in the copy; 0 for an object that is not kept.
    std::uint32_t NumberOf(std::uint32_t object) const;

    RecordWriter& writer;
    std::uint64_t now = 0;
    std::vector<std::uint64_t> starts;   // of the open calls
    std::vector<std::uint32_t> numbers;  // of objects in the copy, by their numbers in the original, from 1
};

}  // namespace zelt::recording
