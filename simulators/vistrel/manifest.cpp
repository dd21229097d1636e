// SPDX-License-Identifier: Apache-2.0

#include "manifest.hpp"

#include <algorithm>

#include "common/embedded_file.hpp"
#include "common/file.hpp"
#include "common/handoff.hpp"
#include "common/refusal.hpp"

namespace simulator::vistrel {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{256} << 20U;

json::value parseJson(std::string_view text) {
    json::parse_options options;
    options.max_depth = 64;
    json::parser parser({}, options);
    boost::system::error_code error;
    const std::size_t parsed = parser.write(text.data(), text.size(), error);
    if (!error)
        return parser.release();
    const auto line = std::ranges::count(text.substr(0, parsed), '\n') + 1;
    throw Refusal("the manifest is not valid JSON: " + error.message() + " in line " + std::to_string(line));
}

} // namespace

std::string readManifestFile(const std::filesystem::path& file) {
    return readWholeFile(file, sizeLimit, "a manifest");
}

json::object parseManifest(std::string_view text) {
    json::value document = parseJson(text);
    // Another version may have other keys, so the version is checked before the keys are.
    expectSchema(document, {{"contractVersion", "text"}}, "");
    if (const std::string version = textOf(document.get_object(), "contractVersion");
        version != handoffContract) {
        throw Refusal("contractVersion: " + jsonQuoted(version) + " is not " + jsonQuoted(handoffContract) +
                      ", the only version that can be imported");
    }
    expectSchema(document, json::parse(embeddedFile("manifest-schema.json")), "");
    removeNulls(document);
    return std::move(document.get_object());
}

} // namespace simulator::vistrel
