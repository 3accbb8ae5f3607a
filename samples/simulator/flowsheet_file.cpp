#include "samples/simulator/flowsheet_file.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "samples/component/bytes.h"
#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

constexpr std::uint32_t kSignature = 0x3153465A;  // "ZFS1"
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kLargestFile = std::size_t{1} << 28;
constexpr std::uint32_t kMostFeeds = 100;

void WriteClass(ByteWriter& writer, const CLSID& clsid) { writer.Bytes(std::as_bytes(std::span(&clsid, 1))); }

CLSID ReadClass(ByteReader& reader)
{
    const std::vector<std::byte> bytes = reader.Bytes();
    CLSID clsid;
    if (bytes.size() != sizeof(clsid)) throw CapeFailure(ECapePersistenceHR, L"A class identity has a wrong size");
    std::memcpy(&clsid, bytes.data(), sizeof(clsid));
    return clsid;
}

FlowsheetData Read(ByteReader& reader)
{
    if (reader.Number() != kSignature) throw CapeFailure(ECapePersistenceHR, L"This is not a saved flowsheet");
    if (reader.Number() != kVersion) throw CapeFailure(ECapePersistenceHR, L"Its version is not understood");
    FlowsheetData data{};
    data.manager = ReadClass(reader);
    data.package = reader.Text();
    data.unit = ReadClass(reader);
    const std::uint32_t compounds = reader.Number();
    // Each compound takes at least four bytes, so a count that exceeds the data fails before any compound is read.
    if (compounds > reader.Left() / 4) throw CapeFailure(ECapePersistenceHR, L"The saved data end too early");
    for (std::uint32_t i = 0; i < compounds; ++i) data.compounds.push_back(reader.Text());
    const std::uint32_t feeds = reader.Number();
    if (feeds > kMostFeeds) throw CapeFailure(ECapePersistenceHR, L"It has too many feeds");
    for (std::uint32_t i = 0; i < feeds; ++i) {
        Feed feed{reader.Real(), reader.Real(), reader.Real(), reader.Reals()};
        const bool finite = std::isfinite(feed.flow) && std::isfinite(feed.temperature) && std::isfinite(feed.pressure);
        if (!finite || feed.fractions.size() != compounds) throw CapeFailure(ECapePersistenceHR, L"A feed is damaged");
        data.feeds.push_back(std::move(feed));
    }
    data.power = reader.Real();
    data.hasUnitState = reader.Number() != 0;
    data.unitState = reader.Bytes();
    reader.RequireEnd();
    return data;
}

}  // namespace

void SaveFlowsheet(const std::wstring& path, const FlowsheetData& data)
{
    ByteWriter writer;
    writer.Number(kSignature);
    writer.Number(kVersion);
    WriteClass(writer, data.manager);
    writer.Text(data.package);
    WriteClass(writer, data.unit);
    writer.Number(static_cast<std::uint32_t>(data.compounds.size()));
    for (const std::wstring& compound : data.compounds) writer.Text(compound);
    writer.Number(static_cast<std::uint32_t>(data.feeds.size()));
    for (const Feed& feed : data.feeds) {
        writer.Real(feed.flow);
        writer.Real(feed.temperature);
        writer.Real(feed.pressure);
        writer.Reals(feed.fractions);
    }
    writer.Real(data.power);
    writer.Number(data.hasUnitState ? 1 : 0);
    writer.Bytes(data.unitState);

    Named(L"Flowsheet file " + Quoted(path), [&] {
        const std::filesystem::path target(path), temporary(path + L".new");
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        const std::vector<std::byte>& bytes = writer.Result();
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        file.close();
        std::error_code error;
        if (file) std::filesystem::rename(temporary, target, error);
        if (!file || error) {
            std::filesystem::remove(temporary, error);
            throw CapeFailure(ECapePersistenceSystemErrorHR, L"It cannot be written");
        }
    });
}

FlowsheetData LoadFlowsheet(const std::wstring& path)
{
    return Named(L"Flowsheet file " + Quoted(path), [&] {
        std::error_code error;
        const auto size = std::filesystem::file_size(path, error);
        if (error) throw CapeFailure(ECapePersistenceNotFoundHR, L"There is no such file");
        if (size > kLargestFile) throw CapeFailure(ECapePersistenceOverflowHR, L"It is too large");
        std::vector<std::byte> bytes(static_cast<std::size_t>(size));
        std::ifstream file(std::filesystem::path(path), std::ios::binary);
        file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file) throw CapeFailure(ECapePersistenceSystemErrorHR, L"It cannot be read");
        ByteReader reader(bytes);
        return Read(reader);
    });
}

}  // namespace zelt::sample
