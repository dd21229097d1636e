// SPDX-License-Identifier: Apache-2.0

#include "rounds.hpp"

#include <algorithm>

namespace kinovane::benchmarks {

double Row::median() const {
    std::vector<double> sorted = ratios;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted.at(middle) : (sorted.at(middle - 1) + sorted.at(middle)) / 2;
}

bool Row::missed() const {
    if (!target)
        return false;
    return atMost ? median() > *target : median() < *target;
}

std::vector<Row> compare(const Figure& figure, std::size_t rounds, const Timing& library,
                         const std::vector<Peer>& peers) {
    std::vector<Row> rows;
    rows.reserve(peers.size());
    library();
    for (const Peer& peer : peers) {
        rows.push_back({.figure = figure, .peer = peer.name, .ratios = {}, .target = peer.target});
        peer.run();
    }
    for (std::size_t round = 0; round < rounds; ++round) {
        const double own = library();
        for (std::size_t index = 0; index < peers.size(); ++index)
            rows[index].ratios.push_back(peers[index].run() / own);
    }
    return rows;
}

} // namespace kinovane::benchmarks
