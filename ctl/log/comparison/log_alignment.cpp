#include "ctl/log/comparison/log_alignment.h"

#include <algorithm>

namespace zelt::ctl {
namespace {

// If more elements than this have no counterpart, the search gives up: its time and memory grow with the square of their
// number.
constexpr int kMostLeftOver = 3000;

// How far in `a` the furthest path on each diagonal got, with a certain number of leftover elements.
using Furthest = std::vector<int>;

struct Search {
    std::vector<Furthest> steps;
    int endA = 0, endB = 0;
    bool complete = false;
};

Search FindPath(const std::vector<int>& a, const std::vector<int>& b)
{
    const int sizeA = static_cast<int>(a.size()), sizeB = static_cast<int>(b.size());
    const int limit = std::min(sizeA + sizeB, kMostLeftOver);
    Search search;
    Furthest current(1, 0);
    for (int left = 0; left <= limit; ++left) {
        // Diagonal d, the place in `a` minus the place in `b`, is at index d + left.
        Furthest next(2 * static_cast<std::size_t>(left) + 1);
        for (int d = -left; d <= left; d += 2) {
            int x = 0;
            if (left > 0) {
                const auto before = [&](int diagonal) {
                    const int at = diagonal + left - 1;
                    return at >= 0 && at < static_cast<int>(current.size()) ? current[static_cast<std::size_t>(at)]
                                                                            : -1;
                };
                const int down = d < left ? before(d + 1) : -1, right = d > -left ? before(d - 1) : -1;
                x = down > right ? down : right + 1;
            }
            int y = x - d;
            while (x < sizeA && y < sizeB && a[static_cast<std::size_t>(x)] == b[static_cast<std::size_t>(y)]) ++x, ++y;
            const int place = d + left;
            next[static_cast<std::size_t>(place)] = x;
            if (x <= sizeA && y <= sizeB && x + y > search.endA + search.endB) search.endA = x, search.endB = y;
            if (x >= sizeA && y >= sizeB) {
                search.steps.push_back(std::move(next));
                search.endA = sizeA;
                search.endB = sizeB;
                search.complete = true;
                return search;
            }
        }
        search.steps.push_back(next);
        current = std::move(next);
    }
    return search;
}

// The pairs of a complete search, the last one first. `start` is where the searched part begins in both sequences.
std::vector<AlignedPair> TracePath(const Search& search, std::size_t start)
{
    std::vector<AlignedPair> reversed;
    int x = search.endA, y = search.endB;
    const auto place = [start](int at) { return start + static_cast<std::size_t>(at); };
    for (int left = static_cast<int>(search.steps.size()) - 1; left >= 0; --left) {
        const int d = x - y;
        int startX = 0;
        bool down = false;
        if (left > 0) {
            const Furthest& before = search.steps[static_cast<std::size_t>(left) - 1];
            const auto at = [&](int diagonal) {
                const int index = diagonal + left - 1;
                const bool isThere = index >= 0 && index < static_cast<int>(before.size());
                return isThere ? before[static_cast<std::size_t>(index)] : -1;
            };
            const int fromDown = d < left ? at(d + 1) : -1, fromRight = d > -left ? at(d - 1) : -1;
            down = fromDown > fromRight;
            startX = down ? fromDown : fromRight + 1;
        }
        while (x > startX) {
            --x;
            --y;
            reversed.push_back({place(x), place(y)});
        }
        if (left == 0) break;
        if (down) {
            --y;
            reversed.push_back({{}, place(y)});
        } else {
            --x;
            reversed.push_back({place(x), {}});
        }
    }
    return reversed;
}

}  // namespace

Alignment Align(const std::vector<int>& a, const std::vector<int>& b)
{
    // Equal beginnings and ends need no search.
    std::size_t start = 0, end = 0;
    while (start < a.size() && start < b.size() && a[start] == b[start]) ++start;
    while (end < a.size() - start && end < b.size() - start && a[a.size() - 1 - end] == b[b.size() - 1 - end]) ++end;
    const auto middle = [&](const std::vector<int>& all) {
        return std::vector<int>(all.begin() + static_cast<std::ptrdiff_t>(start),
                                all.end() - static_cast<std::ptrdiff_t>(end));
    };
    const std::vector<int> middleA = middle(a), middleB = middle(b);
    const Search search = FindPath(middleA, middleB);

    std::vector<AlignedPair> reversed;
    Alignment alignment;
    alignment.complete = search.complete;
    if (search.complete) {
        reversed = TracePath(search, start);
    } else {
        for (std::size_t i = middleB.size(); i > 0; --i) reversed.push_back({{}, start + i - 1});
        for (std::size_t i = middleA.size(); i > 0; --i) reversed.push_back({start + i - 1, {}});
    }
    for (std::size_t i = 0; i < start; ++i) alignment.pairs.push_back({i, i});
    alignment.pairs.insert(alignment.pairs.end(), reversed.rbegin(), reversed.rend());
    for (std::size_t i = end; i > 0; --i) alignment.pairs.push_back({a.size() - i, b.size() - i});
    return alignment;
}

}  // namespace zelt::ctl
