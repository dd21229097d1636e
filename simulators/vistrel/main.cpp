// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <iostream>
#include <string>

#include "asset_files.hpp"
#include "common/misbehaviour.hpp"
#include "common/program.hpp"
#include "film_library.hpp"
#include "manifest.hpp"
#include "storyboard.hpp"

namespace simulator::vistrel {
namespace {

constexpr std::array<std::string_view, 2> forms{"production import-film <manifest> --dry-run --output json",
                                                "production import-film <manifest> --output json"};
constexpr std::string_view hint = "A manifest whose name begins with \"-\" is written as \"./-name\".\n";

std::string sampleReceipt(bool ok) {
    return std::string(R"({"ok":)") + (ok ? "true" : "false") +
           R"(,"project_id":"vistrel_sample","episode_id":"vistrel_sample_episode_1","imported_scenes":2,)"
           R"("imported_shots":3,"imported_assets":5,"project_url":"vistrel://projects/vistrel_sample"})";
}

constexpr const char* camelCaseReceipt =
    R"({"ok":true,"projectId":"vistrel_sample","episodeId":"vistrel_sample_episode_1","importedScenes":2,)"
    R"("importedShots":3,"importedAssets":5,"projectUrl":"vistrel://projects/vistrel_sample"})";

/// Writes far more than a pipe holds to both streams in turn: a reader of only one of them never finishes.
int flood() {
    constexpr std::size_t chunkSize = std::size_t{64} << 10U;
    constexpr std::size_t chunks = 128;
    const std::string padding(chunkSize, ' ');
    std::string log;
    while (log.size() < chunkSize)
        log += "[debug] examining the film again\n";
    log.resize(chunkSize - 1);
    log += '\n';
    std::cout << sampleReceipt(true);
    for (std::size_t chunk = 0; chunk < chunks; ++chunk) {
        std::cout << padding << std::flush;
        std::cerr << log << std::flush;
    }
    return print("");
}

std::span<const Misbehaviour> misbehaviours() {
    static const std::array<Misbehaviour, 7> all{
        {{"not-json", [] { return print("The film has been imported."); }},
         {"camel-case", [] { return print(camelCaseReceipt); }},
         {"not-ok", [] { return print(sampleReceipt(false)); }},
         {"exit-3", [] { return 3; }},
         {"noise", [] { return print("[info] opening the library\n" + sampleReceipt(true)); }},
         {"flood", flood},
         {"killed", []() -> int { dieByKill(); }}}};
    return all;
}

int perform(const Command& command, Arguments) {
    if (const auto status = misbehave("VISTREL_MISBEHAVE", misbehaviours()))
        return *status;
    const std::string text = readManifestFile(command.value("manifest"));
    const json::object manifest = parseManifest(text);
    checkManifest(manifest);
    AssetFiles files(textOf(recordOf(manifest, "source"), "projectRoot"));
    if (command.optionalValue("dry-run"))
        for (const json::value& asset : listOf(manifest, "assets"))
            files.verify(asRecord(asset));
    else
        FilmLibrary::fromEnvironment().import(manifest, text, files);
    std::cout << json::serialize(receiptFor(manifest)) << '\n';
    return 0;
}

} // namespace
} // namespace simulator::vistrel

int main(int argumentCount, char** argumentValues) {
    using namespace simulator;
    return runProgram(argumentCount, argumentValues, {"vistrel", vistrel::forms, vistrel::hint}, "receipt",
                      vistrel::perform);
}
