#include "bench/written_recording.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

#include "recording/record_writer.h"

namespace zelt::bench {

using namespace recording;

namespace {

constexpr std::uint16_t kReal = 5, kArray = 0x2000;
constexpr std::uint64_t kFrequency = 10'000'000;
constexpr int kNumbers = 10;
constexpr int kCallsAtOnce = 100;

Header HeaderOfAPackage()
{
    Header header;
    header.program = "ZELT 1.0.0";
    header.width = sizeof(void*) * 8;
    header.objectName = "Aromatics";
    header.objectType = "Property Package";
    header.startText = "March 05, 2026, 14:07";
    header.frequency = kFrequency;
    header.codePage = 1252;
    return header;
}

class Calls {
public:
    explicit Calls(RecordWriter& records)
        : records(records), package(records.NewObject(0x1000, 0x2000)), material(records.NewObject(0x3000, 0x4000))
    {}

    // A calculation that asks its material once.
    void Add()
    {
        const std::uint64_t begin = ++now;
        records.BeginCall("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "Aromatics", package, false, begin);
        Text("phaseLabel", "Vapor");
        const std::uint64_t asked = ++now;
        records.BeginCall("ICapeThermoMaterial::GetOverallProp", "Feed", material, true, asked);
        Text("property", "fraction");
        Numbers("results", true);
        ++now;
        records.EndCall(0, now, now - asked, nullptr);
        ++now;
        records.EndCall(0, now, now - begin, nullptr);
    }

private:
    void Text(std::string_view name, std::string_view text)
    {
        records.Argument(name, false, ArgumentKind::String, [text](ValueWriter& value) { value.Text(text); });
    }
    void Numbers(std::string_view name, bool isOut)
    {
        double numbers[kNumbers];
        for (double& number : numbers) number = static_cast<double>(random()) / 1e6;
        records.Argument(name, isOut, ArgumentKind::Variant, [&numbers](ValueWriter& value) {
            value.Variant(kArray | kReal, [&numbers](ValueWriter& variant) {
                variant.Array([&numbers](ValueWriter::ArrayFields& array) {
                    const std::int32_t bounds[] = {0, kNumbers};
                    array.add_uint32(ArrayTag::Features, 0x80);
                    array.add_uint32(ArrayTag::ElementSize, sizeof(double));
                    array.add_uint32(ArrayTag::ElementType, kReal + 1);
                    array.add_packed_sint32(ArrayTag::Bounds, std::begin(bounds), std::end(bounds));
                    array.add_bytes(ArrayTag::Numbers, reinterpret_cast<const char*>(numbers), sizeof numbers);
                });
            });
        });
    }

    RecordWriter& records;
    const std::uint32_t package, material;
    std::uint64_t now = 0;
    std::minstd_rand random{1};
};

}  // namespace

WrittenRecording::WrittenRecording(long long bytes)
{
    const std::filesystem::path place =
        std::filesystem::temp_directory_path() / ("bench " + std::to_string(std::random_device()()) + ".zlr");
    path = place.wstring();
    std::ofstream file(place, std::ios::binary);
    long long written = 0;
    RecordWriter records([&](std::string_view more) {
        written += static_cast<long long>(more.size());
        return static_cast<bool>(file.write(more.data(), static_cast<std::streamsize>(more.size())));
    });
    records.Begin(HeaderOfAPackage());
    Calls calls(records);
    while (file && written < bytes) {
        for (int i = 0; i < kCallsAtOnce; ++i) calls.Add();
        records.Flush();
    }
    records.End();
    file.close();
    if (!file) {
        std::filesystem::remove(place);
        throw std::runtime_error("the recording cannot be written");
    }
}

WrittenRecording::~WrittenRecording()
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

}  // namespace zelt::bench
