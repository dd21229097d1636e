// SPDX-License-Identifier: Apache-2.0

#include "arguments/suggestion.hpp"

#include <algorithm>
#include <numeric>

namespace kinovane::tool {

namespace {

constexpr std::size_t longestWord = 64;

/// The number of insertions, deletions, replacements and exchanges of neighbours between two words (optimal
/// string alignment distance).
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> beforePrevious;
    std::vector<std::size_t> previous(right.size() + 1);
    std::iota(previous.begin(), previous.end(), std::size_t{0});
    for (std::size_t row = 1; row <= left.size(); ++row) {
        std::vector<std::size_t> current(right.size() + 1);
        current[0] = row;
        for (std::size_t column = 1; column <= right.size(); ++column) {
            const bool same = left[row - 1] == right[column - 1];
            current[column] = std::min(
                {previous[column] + 1, current[column - 1] + 1, previous[column - 1] + (same ? 0U : 1U)});
            if (row > 1 && column > 1 && left[row - 1] == right[column - 2] &&
                left[row - 2] == right[column - 1])
                current[column] = std::min(current[column], beforePrevious[column - 2] + 1);
        }
        beforePrevious = std::move(previous);
        previous = std::move(current);
    }
    return previous.back();
}

} // namespace

std::optional<std::string> similarWord(std::string_view word, const std::vector<std::string>& known) {
    std::optional<std::string> best;
    std::size_t bestDistance = 0;
    if (word.size() > longestWord)
        return best;
    for (const std::string& candidate : known) {
        const std::size_t changes = distance(word, candidate);
        const std::size_t limit = std::max<std::size_t>(1, candidate.size() / 3);
        if (changes <= limit && (!best || changes < bestDistance)) {
            best = candidate;
            bestDistance = changes;
        }
    }
    return best;
}

} // namespace kinovane::tool
