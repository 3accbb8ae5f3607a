#include "samples/component/bytes.h"

#include <cstring>

#include "samples/component/cape_failure.h"

namespace zelt::sample {
namespace {

// Text is saved in the 16-bit units of Windows.
static_assert(sizeof(wchar_t) == 2);

}  // namespace

void ByteWriter::Append(const void* data, std::size_t size)
{
    const auto* first = static_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), first, first + size);
}

void ByteWriter::Text(std::wstring_view text)
{
    Number(static_cast<std::uint32_t>(text.size()));
    Append(text.data(), text.size() * sizeof(wchar_t));
}

void ByteWriter::Reals(std::span<const double> values)
{
    Number(static_cast<std::uint32_t>(values.size()));
    Append(values.data(), values.size_bytes());
}

void ByteWriter::Bytes(std::span<const std::byte> values)
{
    Number(static_cast<std::uint32_t>(values.size()));
    Append(values.data(), values.size());
}

void ByteReader::Take(void* data, std::size_t size)
{
    if (size > rest.size()) throw CapeFailure(ECapePersistenceHR, L"The saved data end too early");
    if (size > 0) std::memcpy(data, rest.data(), size);
    rest = rest.subspan(size);
}

std::uint32_t ByteReader::Number()
{
    std::uint32_t value = 0;
    Take(&value, sizeof(value));
    return value;
}

double ByteReader::Real()
{
    double value = 0;
    Take(&value, sizeof(value));
    return value;
}

std::size_t ByteReader::Count(std::size_t size)
{
    const std::size_t count = Number();
    if (count > rest.size() / size) throw CapeFailure(ECapePersistenceHR, L"The saved data end too early");
    return count;
}

std::wstring ByteReader::Text()
{
    std::wstring text(Count(sizeof(wchar_t)), L'\0');
    Take(text.data(), text.size() * sizeof(wchar_t));
    return text;
}

std::vector<double> ByteReader::Reals()
{
    std::vector<double> values(Count(sizeof(double)));
    Take(values.data(), values.size() * sizeof(double));
    return values;
}

std::vector<std::byte> ByteReader::Bytes()
{
    std::vector<std::byte> values(Count(1));
    Take(values.data(), values.size());
    return values;
}

void ByteReader::RequireEnd() const
{
    if (!rest.empty()) throw CapeFailure(ECapePersistenceHR, L"The saved data are longer than they should be");
}

}  // namespace zelt::sample
