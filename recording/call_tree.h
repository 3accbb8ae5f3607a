// The calls of a recording as trees, each outermost call with all the calls nested in it. The reader holds only one tree at a
// time, however long the recording is.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "recording/record_reader.h"

namespace zelt::recording {

// The component that was recorded; see recording.proto.
struct KeptComponent {
    std::string classId, name, exportedName, library, libraryVersion, libraryHash;
    std::uint32_t kind = 0;
    std::uint64_t pointer = 0;
};

struct KeptCall {
    std::uint64_t number = 0;  // among all calls of the recording, from 1
    CallRecord call;
    ObjectRecord object;  // its pointers; 0 when they are not known
    std::vector<ArgumentRecord> arguments;
    std::vector<std::unique_ptr<KeptCall>> nested;
    bool hasEnded = false;  // false if the recording ends within the call
    ResultRecord result;
    std::optional<KeptComponent> component;  // one that was made within the call

    // Holds the texts that the call, its arguments and its result refer to.
    std::deque<std::string> texts;
};

// What objects answered when they were asked for interfaces.
class KeptQueries {
public:
    void Add(std::uint64_t pointer, std::string_view interfaceId, bool isGranted);
    // The latest answer of the object with that pointer; nothing when it was not asked.
    std::optional<bool> Answer(std::uint64_t pointer, std::string_view interfaceId) const;
    // The interfaces that the object has granted, by their identifiers of 16 bytes.
    std::vector<std::string> Granted(std::uint64_t pointer) const;

private:
    std::map<std::uint64_t, std::map<std::string, bool, std::less<>>> answers;
};

class CallTreeReader {
public:
    // The header must have been read.
    explicit CallTreeReader(RecordReader& records) : records(records) {}

    // The next outermost call; null at the end. Throws std::runtime_error for calls that are nested deeper than any stack
    // allows.
    std::unique_ptr<KeptCall> Next();
    // What has been read: the component that was made outside of calls, and the answers to all queries.
    const std::optional<KeptComponent>& Component() const { return component; }
    const KeptQueries& Queries() const { return queries; }
    // Whether the last record of a complete recording has been read.
    bool IsClosed() const { return isClosed; }

private:
    void Take(const Record& record);
    ObjectRecord ObjectWith(std::uint32_t number) const;

    RecordReader& records;
    std::vector<ObjectRecord> objects;  // by their numbers, from 1
    std::vector<KeptCall*> open;
    std::unique_ptr<KeptCall> outermost;
    std::optional<KeptComponent> component;
    KeptQueries queries;
    std::uint64_t calls = 0;
    bool isClosed = false;
};

// A copy of a value that stays valid when the next record is read: its texts are copied to `texts`.
Value Keep(const Value& value, std::deque<std::string>& texts);
ArgumentRecord Keep(const ArgumentRecord& argument, std::deque<std::string>& texts);

}  // namespace zelt::recording
