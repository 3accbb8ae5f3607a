#include "ctl/log/redaction/compound_names.h"

#include "ctl/log/call_results.h"

namespace zelt::ctl {
namespace {

// A forged log may have any number of names.
constexpr std::size_t kMostNames = 10'000;

std::string InQuotes(const std::string& name) { return "&quot;" + name + "&quot;"; }

}  // namespace

const std::string& CompoundNames::NameOf(std::string_view quoted, const LogAliases& aliases)
{
    const std::string_view name = Unquoted(quoted);
    if (name.empty()) return surplus = InQuotes({});
    const auto found = names.find(name);
    if (found != names.end()) return found->second;
    if (names.size() == kMostNames) return surplus = InQuotes(aliases.Text(name));
    return names.emplace(name, InQuotes("Compound-" + std::to_string(names.size() + 1))).first->second;
}

}  // namespace zelt::ctl
