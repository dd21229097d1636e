// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Measuring the library against its peers so that both see the same machine: one after the other, round
/// after round, and a ratio for each round. What slows a whole round down slows both and leaves the ratio.
namespace kinovane::benchmarks {

/// Does the work once; gives the seconds that it took.
using Timing = std::function<double()>;

/// Times the whole of `work`, what it destroys at its end included.
template <class Work>
Timing timed(Work work) {
    return [work = std::move(work)] {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
}

/// Times `count` repetitions of `work`.
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
    double target = 0; ///< How many times as fast the library should be, at least.
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

/// Warms everything up once and then measures round by round: the library, every peer in order. The ratios
/// say how many times as fast as the peer the library is.
std::vector<Row> compare(const Figure& figure, std::size_t rounds, const Timing& library,
                         const std::vector<Peer>& peers);

} // namespace kinovane::benchmarks
