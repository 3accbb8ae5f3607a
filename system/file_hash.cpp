#include "system/file_hash.h"

#include <windows.h>
#include <bcrypt.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "system/owners.h"

namespace zelt {
namespace {

struct CloseAlgorithm {
    void operator()(void* algorithm) const { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
struct DestroyHash {
    void operator()(void* hash) const { BCryptDestroyHash(hash); }
};

std::unique_ptr<void, CloseAlgorithm> OpenSha256()
{
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0) algorithm = nullptr;
    return std::unique_ptr<void, CloseAlgorithm>(algorithm);
}

}  // namespace

std::string Sha256OfFile(const std::wstring& path)
{
    constexpr std::size_t kPortion = 64 << 10;
    constexpr std::size_t kHashSize = 32;
    const auto algorithm = OpenSha256();
    const Owner<FILE*, std::fclose> file(_wfopen(path.c_str(), L"rb"));
    BCRYPT_HASH_HANDLE made = nullptr;
    if (!algorithm || !file || BCryptCreateHash(algorithm.get(), &made, nullptr, 0, nullptr, 0, 0) < 0) return {};
    const std::unique_ptr<void, DestroyHash> hash(made);
    std::vector<UCHAR> bytes(kPortion);
    while (const std::size_t read = std::fread(bytes.data(), 1, kPortion, file.get())) {
        if (BCryptHashData(hash.get(), bytes.data(), static_cast<ULONG>(read), 0) < 0) return {};
    }
    if (std::ferror(file.get())) return {};
    std::string digest(kHashSize, '\0');
    if (BCryptFinishHash(hash.get(), reinterpret_cast<UCHAR*>(digest.data()), kHashSize, 0) < 0) return {};
    return digest;
}

}  // namespace zelt
