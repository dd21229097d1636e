// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Compares the library with its peers: one after the other in each round, with a ratio for each round, so
/// that a slow round affects both and not the ratio.
namespace kinovane::benchmarks {

/// Does the work once and returns the seconds that it took.
using Timing = std::function<double()>;

/// Measures the time of `work`, including its destructors.
template <class Work>
Timing timed(Work work) {
    return [work = std::move(work)] {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
}

/// Measures the time of `count` repetitions of `work`.
template <class Work>
Timing timedRepeatedly(std::size_t count, Work work) {
    return timed([count, work = std::move(work)] {
        for (std::size_t index = 0; index < count; ++index)
            work();
    });
}

struct Figure {
    int number = 0;
    std::string title;
};

struct Peer {
    std::string name;
    double target = 0; ///< The lowest ratio that the library should reach.
    Timing run;
};

/// One line of the table.
struct Row {
    Figure figure;
    std::string peer;
    std::vector<double> ratios; ///< One for each round.
    std::optional<double> target;
    bool atMost = false; ///< Whether the target is an upper limit.

    double median() const;
    bool missed() const;
};

/// Runs one warm-up round and then measures round by round: the library, then every peer in order. A ratio is
/// the time of the peer divided by the time of the library.
std::vector<Row> compare(const Figure& figure, std::size_t rounds, const Timing& library,
                         const std::vector<Peer>& peers);

} // namespace kinovane::benchmarks
