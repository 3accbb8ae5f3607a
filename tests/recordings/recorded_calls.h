// Makes recordings for tests, call by call.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/record_writer.h"

namespace zelt::test {

// The number of the component's object.
inline constexpr std::uint32_t kPackage = 1;

// Records one component, whose object has the number 1 and the pointer 0x1000. Each beginning and each end of a call
// takes a microsecond.
class RecordedCalls {
public:
    explicit RecordedCalls(bool hasComponent = true);

    std::uint32_t NewObject(std::uint64_t pointer, std::uint64_t proxy = 0);
    void Query(std::uint32_t object, bool isGranted = true, std::string_view interfaceId = "fedcba9876543210");
    // `inside` makes arguments and inner calls. If `status` is a failure, its name is "ECapeUnknownHR".
    void Call(std::string_view member, std::uint32_t object, const std::function<void()>& inside = {},
              std::uint32_t status = 0);
    void CallOut(std::string_view member, std::uint32_t object, const std::function<void()>& inside = {},
                 std::uint32_t status = 0);
    // Arguments of the latest call.
    void Pointer(std::string_view name, bool isOut, std::uint64_t address);
    void Real(std::string_view name, bool isOut, double number);
    void Text(std::string_view name, bool isOut, std::string_view text);
    void Reals(std::string_view name, bool isOut, const std::vector<double>& numbers);
    void Texts(std::string_view name, bool isOut, const std::vector<std::string>& texts);
    void Sentence(std::string_view pattern, const std::vector<std::string_view>& holes);
    // What the latest call reads from its stream.
    void Stream(std::string_view data) { stream = data; }
    void MakeComponent();

    // The bytes of the recording. Whole() adds the record that ends it; Open() does not.
    std::string Whole();
    std::string Open();

    recording::RecordWriter& Writer() { return writer; }

private:
    void Make(std::string_view member, std::uint32_t object, bool isOutward, const std::function<void()>& inside,
              std::uint32_t status);

    std::string bytes;
    std::optional<std::string> stream;
    recording::RecordWriter writer;
    std::uint64_t now = 0;
    std::vector<std::string> names;  // of the objects
};

// The members of all calls, each with "<" before it when it goes to the simulator, and two blanks for each level.
std::vector<std::string> CallsOf(const std::string& recording);

}  // namespace zelt::test
