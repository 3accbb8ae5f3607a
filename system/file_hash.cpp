#include "system/file_hash.h"

#include <windows.h>
#include <bcrypt.h>

#include <memory>
#include <vector>

namespace zelt {
namespace {

struct CloseAlgorithm {
    void operator()(void* algorithm) const { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
struct DestroyHash {
    void operator()(void* hash) const { BCryptDestroyHash(hash); }
};
struct CloseFile {
    void operator()(void* file) const { CloseHandle(file); }
};

std::unique_ptr<void, CloseAlgorithm> OpenSha256()
{
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0) algorithm = nullptr;
    return std::unique_ptr<void, CloseAlgorithm>(algorithm);
}

std::unique_ptr<void, CloseFile> OpenForReading(const std::wstring& path)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    return std::unique_ptr<void, CloseFile>(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

}  // namespace

std::string Sha256OfFile(const std::wstring& path)
{
    constexpr DWORD kPortion = 64 << 10;
    constexpr std::size_t kHashSize = 32;
    const auto algorithm = OpenSha256();
    const auto file = OpenForReading(path);
    BCRYPT_HASH_HANDLE made = nullptr;
    if (!algorithm || !file || BCryptCreateHash(algorithm.get(), &made, nullptr, 0, nullptr, 0, 0) < 0) return {};
    const std::unique_ptr<void, DestroyHash> hash(made);
    std::vector<UCHAR> bytes(kPortion);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(file.get(), bytes.data(), kPortion, &read, nullptr)) return {};
        if (read == 0) break;
        if (BCryptHashData(hash.get(), bytes.data(), read, 0) < 0) return {};
    }
    std::string digest(kHashSize, '\0');
    if (BCryptFinishHash(hash.get(), reinterpret_cast<UCHAR*>(digest.data()), kHashSize, 0) < 0) return {};
    return digest;
}

}  // namespace zelt
