// SPDX-License-Identifier: Apache-2.0

#include "documents.hpp"

#include <cmath>

#include "common/embedded_file.hpp"
#include "common/file.hpp"
#include "common/refusal.hpp"

namespace simulator::film {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

} // namespace

json::object readDocument(const std::filesystem::path& file) {
    const std::string text = readWholeFile(file, sizeLimit, "a film document");
    boost::system::error_code error;
    json::value value = json::parse(text, error);
    if (error)
        throw Refusal(jsonQuoted(file.native()) + " is not valid JSON: " + error.message());
    if (!value.is_object())
        throw Refusal(jsonQuoted(file.native()) + " does not hold a JSON object");
    removeNulls(value);
    return std::move(value.get_object());
}

json::object documentTemplate(std::string_view name) { return json::parse(embeddedFile(name)).as_object(); }

std::int64_t millisecondsOf(const json::object& record, std::string_view key) {
    const double milliseconds = numberOf(record, key) * 1000;
    // The limit is far beyond any film; it keeps the conversion and later sums within range.
    if (milliseconds < 0 || milliseconds > 1e9)
        throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is not a reasonable time");
    return std::llround(milliseconds);
}

json::object* findRecord(json::array& records, std::string_view key, std::string_view text) {
    for (json::value& value : records)
        if (json::object& record = asRecord(value); textOf(record, key) == text)
            return &record;
    return nullptr;
}

void removeRecords(json::array& records, std::string_view key, std::string_view text) {
    for (auto record = records.begin(); record != records.end();)
        record = textOf(asRecord(*record), key) == text ? records.erase(record) : record + 1;
}

} // namespace simulator::film
