// What replaces the names and values of a log that is given away. The same name has the same alias throughout a run. Aliases
// depend on a key from the system's source of random numbers, which is never written, so that no alias can be traced back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelt::ctl {

class LogAliases {
public:
    LogAliases();

    // The alias of a text or a name: "redacted-0123456789".
    std::string Text(std::string_view text) const;
    // The same, but an empty name and "<unknown>" stay.
    std::string Name(std::string_view name) const;
    // The alias of an address: 0x and as many hexadecimal digits.
    std::string Address(std::string_view address) const;
    // The alias of bytes: as many other bytes.
    std::string Bytes(std::string_view bytes) const;
    // The alias of a value of an argument of this type, in the log's own form.
    std::string Value(std::string_view value, std::string_view type) const;

    // The alias of a number. Of two numbers of the same type and with the same `order`, the larger one has the larger alias. 0
    // and the signs stay. A value that is not a finite number, or is a whole number of more than 32 bits, gets the alias that
    // Value gives it.
    std::string Ordered(std::string_view number, std::string_view type, std::string_view order) const;

    // A weight between 0.05 and 1 that depends on the text of the number.
    double Weight(std::string_view number) const;
    // A mass between 0.2 and 1 for the compound at this place in the list of compounds.
    double Mass(std::size_t place) const { return place < kMasses ? masses[place] : MassAt(place); }

private:
    std::uint64_t Hash(std::string_view text) const;
    std::string Number(std::string_view text, bool real) const;
    double MassAt(std::size_t place) const;
    double Jitter(std::uint64_t order, int scale, long long place) const;

    std::uint64_t key[2];
    static constexpr std::size_t kMasses = 32;
    double masses[kMasses];  // for the first places, which are needed most
};

}  // namespace zelt::ctl
