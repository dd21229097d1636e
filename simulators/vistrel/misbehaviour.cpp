// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "common/json_text.hpp"
#include "receipt.hpp"

namespace vistrel {
namespace {

using simulator::jsonQuoted;

Receipt sampleReceipt() {
    return {true, "vistrel_sample", "vistrel_sample_episode_1", 2, 3, 5, "vistrel://projects/vistrel_sample"};
}

int printNoJson() {
    std::cout << "The film has been imported.\n";
    return 0;
}

int printCamelCase() {
    const Receipt receipt = sampleReceipt();
    std::cout << boost::json::serialize(boost::json::object{{"ok", receipt.ok},
                                                            {"projectId", receipt.projectId},
                                                            {"episodeId", receipt.episodeId},
                                                            {"importedScenes", receipt.importedScenes},
                                                            {"importedShots", receipt.importedShots},
                                                            {"importedAssets", receipt.importedAssets},
                                                            {"projectUrl", receipt.projectURL}})
              << '\n';
    return 0;
}

int printNotOk() {
    Receipt receipt = sampleReceipt();
    receipt.ok = false;
    std::cout << toJson(receipt) << '\n';
    return 0;
}

int exitWithThree() { return 3; }

int printNoise() {
    std::cout << "[info] opening the library\n" << toJson(sampleReceipt()) << '\n';
    return 0;
}

/// Far more than a pipe holds, on both streams by turns: whoever reads only one of them waits for ever.
int flood() {
    constexpr std::size_t pieceSize = std::size_t{64} << 10U;
    constexpr std::size_t pieces = 128;
    const std::string padding(pieceSize, ' ');
    std::string complaint;
    while (complaint.size() < pieceSize)
        complaint += "[debug] looking at the film once more, to be on the safe side ..\n";
    complaint.resize(pieceSize - 1);
    complaint += '\n';
    std::cout << toJson(sampleReceipt());
    for (std::size_t piece = 0; piece < pieces; ++piece) {
        std::cout << padding << std::flush;
        std::cerr << complaint << std::flush;
    }
    std::cout << '\n';
    return 0;
}

int dieByKill() {
    std::raise(SIGKILL);
    return 1;
}

struct Misbehaviour {
    std::string_view name;
    int (*perform)();
};

constexpr std::array<Misbehaviour, 7> misbehaviours{{{"not-json", printNoJson},
                                                     {"camel-case", printCamelCase},
                                                     {"not-ok", printNotOk},
                                                     {"exit-3", exitWithThree},
                                                     {"noise", printNoise},
                                                     {"flood", flood},
                                                     {"killed", dieByKill}}};

} // namespace

std::optional<int> misbehave() {
    const char* value = std::getenv("VISTREL_MISBEHAVE");
    if (value == nullptr || *value == '\0')
        return std::nullopt;
    const auto chosen = std::ranges::find(misbehaviours, std::string_view(value), &Misbehaviour::name);
    if (chosen != misbehaviours.end())
        return chosen->perform();
    std::cerr << "VISTREL_MISBEHAVE: " << jsonQuoted(value) << " is unknown; known are";
    for (const Misbehaviour& known : misbehaviours)
        std::cerr << ' ' << known.name;
    std::cerr << '\n';
    return 2;
}

} // namespace vistrel
