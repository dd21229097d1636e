// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <iostream>
#include <optional>
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

constexpr int failed = 3;

const char* const reason = "The library is being backed up. Try again in a moment.";

/// An importer that accepts a film in the dry run, and then fails.
std::optional<int> refuseImport(const Command& command) {
    return command.optionalValue("dry-run") ? std::nullopt : std::optional(complain(reason, failed));
}

/// The values of VISTREL_MISBEHAVE.
std::array<Misbehaviour, 13> misbehaviours(const Command& command) {
    return {{{"not-json", [] { return print("The film has been imported."); }},
             {"missing-key", [] { return print(R"({"ok":true})"); }},
             {"wrong-type", [] { return print(R"({"ok":"yes","project_id":"vistrel_sample"})"); }},
             {"camel-case", [] { return print(camelCaseReceipt); }},
             {"not-ok", [] { return print(sampleReceipt(false)); }},
             {"noise", [] { return print("[info] opening the library\n" + sampleReceipt(true)); }},
             {"flood", [] { return flood(sampleReceipt(true)); }},
             {"exit-3", [] { return failed; }},
             {"complain", [] { return complain(reason, failed); }},
             {"refuse-import", [&command] { return refuseImport(command); }},
             {"slow", [] { return waitForRelease("VISTREL_RELEASE"); }},
             {"stubborn", [] { return waitStubbornly("VISTREL_RELEASE"); }},
             {"killed", []() -> int { dieByKill(); }}}};
}

int perform(const Command& command, Arguments) {
    if (const auto status = misbehave("VISTREL_MISBEHAVE", misbehaviours(command)))
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
