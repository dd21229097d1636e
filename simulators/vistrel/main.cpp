// SPDX-License-Identifier: Apache-2.0

#include <exception>
#include <iostream>
#include <new>
#include <vector>

#include "asset_files.hpp"
#include "command_line.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "film_library.hpp"
#include "manifest.hpp"
#include "manifest_check.hpp"
#include "misbehaviour.hpp"
#include "receipt.hpp"

namespace vistrel {
namespace {

using simulator::Refusal;

constexpr int refused = 1;
constexpr int misused = 2;

int perform(const Command& command) {
    const std::string text = readManifestFile(command.manifest);
    const Manifest manifest = parseManifest(text);
    checkManifest(manifest);
    AssetFiles files(manifest.source.projectRoot);
    if (command.dryRun)
        for (const Asset& asset : manifest.assets)
            files.verify(asset);
    else
        FilmLibrary::fromEnvironment().import(manifest, text, files);
    std::cout << toJson(receiptFor(manifest)) << '\n';
    return 0;
}

int run(std::span<const std::string_view> arguments) {
    const auto command = parseCommandLine(arguments);
    if (!command) {
        std::cerr << usage();
        return misused;
    }
    const auto misbehaviour = misbehave();
    const int status = misbehaviour ? *misbehaviour : perform(*command);
    if (!std::cout.flush())
        throw Refusal("cannot write the receipt to standard output");
    return status;
}

} // namespace
} // namespace vistrel

int main(int argumentCount, char** argumentValues) {
    try {
        const std::vector<std::string_view> all(argumentValues, argumentValues + argumentCount);
        return vistrel::run(std::span(all).subspan(all.empty() ? 0 : 1));
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "cannot use " << simulator::jsonQuoted(error.path1().native()) << ": "
                  << error.code().message() << '\n';
    } catch (const std::bad_alloc&) {
        std::cerr << "there is not enough memory to import the film\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return vistrel::refused;
}
