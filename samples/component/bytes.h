// Converts values to bytes and back, for components and the simulator to save: numbers in the processor's byte order
// (little endian on every Windows), texts and lists after their lengths. The reader trusts nothing: a length that
// exceeds the data fails before anything is allocated for it. Reading throws CapeFailure ("persistence").
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelt::sample {

class ByteWriter {
public:
    void Number(std::uint32_t value) { Append(&value, sizeof(value)); }
    void Real(double value) { Append(&value, sizeof(value)); }
    void Text(std::wstring_view text);
    void Reals(std::span<const double> values);
    void Bytes(std::span<const std::byte> values);

    const std::vector<std::byte>& Result() const { return bytes; }

private:
    void Append(const void* data, std::size_t size);

    std::vector<std::byte> bytes;
};

class ByteReader {
public:
    // Borrows the bytes.
    explicit ByteReader(std::span<const std::byte> bytes) : rest(bytes) {}

    std::uint32_t Number();
    double Real();
    std::wstring Text();
    std::vector<double> Reals();
    std::vector<std::byte> Bytes();

    std::size_t Left() const { return rest.size(); }
    // Throws when any bytes are left.
    void RequireEnd() const;

private:
    void Take(void* data, std::size_t size);
    // A count of elements of `size` bytes each; the data must contain them.
    std::size_t Count(std::size_t size);

    std::span<const std::byte> rest;
};

}  // namespace zelt::sample
