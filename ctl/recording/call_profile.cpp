#include "ctl/recording/call_profile.h"

#include <algorithm>
#include <bit>

namespace zelt::ctl {
namespace {

// Each octave is divided into 64 classes; below 128 ns each nanosecond has its own class.
constexpr int kBits = 6;
constexpr std::uint64_t kPerOctave = std::uint64_t{1} << kBits;

std::size_t TimeClassOf(std::uint64_t nanoseconds)
{
    if (nanoseconds < kPerOctave) return static_cast<std::size_t>(nanoseconds);
    const int shift = std::bit_width(nanoseconds) - 1 - kBits;
    return static_cast<std::size_t>((static_cast<std::uint64_t>(shift) << kBits) + (nanoseconds >> shift));
}

// The middle of a class.
std::uint64_t MiddleOf(std::size_t index)
{
    if (index < 2 * kPerOctave) return index;
    const auto shift = static_cast<int>((index >> kBits) - 1);
    const std::uint64_t low = (kPerOctave + (index & (kPerOctave - 1))) << shift;
    return low + (std::uint64_t{1} << shift) / 2;
}

std::uint64_t Difference(std::uint64_t whole, std::uint64_t part) { return whole > part ? whole - part : 0; }

bool IsLonger(const TimedCall& a, const TimedCall& b) { return a.duration > b.duration; }

}  // namespace

void Distribution::Add(std::uint64_t nanoseconds)
{
    const std::size_t index = TimeClassOf(nanoseconds);
    if (index >= counts.size()) counts.resize(index + 1);
    ++counts[index];
    ++total;
}

std::uint64_t Distribution::At(double part) const
{
    if (total == 0) return 0;
    const auto wanted = static_cast<std::uint64_t>(part * static_cast<double>(total - 1)) + 1;
    std::uint64_t seen = 0;
    for (std::size_t index = 0; index < counts.size(); ++index) {
        seen += counts[index];
        if (seen >= wanted) return MiddleOf(index);
    }
    return 0;
}

void CallProfile::Add(const TimedCall& call)
{
    const std::uint64_t self = Difference(call.inside, call.nested);
    AddTo(members[call.member], call, self);
    AddTo(objects[call.object], call, self);
    AddTo(total, call, self);
    if (call.depth == 0) shares.all += call.duration;
    (call.isOutward ? shares.simulator : shares.component) += self;
    if (call.isOutward) {
        shortestOutward = outwardCalls == 0 ? self : std::min(shortestOutward, self);
        ++outwardCalls;
    }
    shares.zelt += Difference(call.duration, call.inside);
    if (slowest.size() < mostSlowest || (!slowest.empty() && IsLonger(call, slowest.back()))) {
        slowest.insert(std::upper_bound(slowest.begin(), slowest.end(), call, IsLonger), call);
        if (slowest.size() > mostSlowest) slowest.pop_back();
    }
}

TimeShares CallProfile::Shares() const
{
    TimeShares split = shares;
    split.transport = outwardCalls * shortestOutward;
    split.simulator -= split.transport;
    return split;
}

void CallProfile::AddTo(CallFigures& figures, const TimedCall& call, std::uint64_t self)
{
    ++figures.calls;
    if (call.status & 0x80000000u) ++figures.failures;
    figures.total += call.duration;
    figures.self += self;
    figures.times.Add(call.duration);
}

}  // namespace zelt::ctl
