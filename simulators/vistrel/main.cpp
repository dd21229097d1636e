// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <iostream>

#include "asset_files.hpp"
#include "common/program.hpp"
#include "film_library.hpp"
#include "manifest.hpp"
#include "misbehaviour.hpp"
#include "receipt.hpp"

namespace simulator::vistrel {
namespace {

constexpr std::array<std::string_view, 2> forms{"production import-film <manifest> --dry-run --output json",
                                                "production import-film <manifest> --output json"};
constexpr std::string_view hint = "A manifest whose name begins with \"-\" is written as \"./-name\".\n";

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
