// SPDX-License-Identifier: Apache-2.0

#include "support/record_rows.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace kinovane::test {

KeyRow text(std::string key) {
    std::string value = '"' + key + '"';
    return {std::move(key), "a string", std::move(value)};
}
KeyRow integer(std::string key, std::string value) {
    return {std::move(key), "an integer", std::move(value)};
}
KeyRow real(std::string key, std::string value) { return {std::move(key), "a number", std::move(value)}; }
KeyRow boolean(std::string key, std::string value) {
    return {std::move(key), "true or false", std::move(value)};
}
KeyRow list(std::string key, std::string value) {
    return {std::move(key), "a list", std::move(value), false, true};
}
KeyRow object(std::string key, std::string value) { return {std::move(key), "an object", std::move(value)}; }

KeyRow map(std::string key, std::string value) {
    KeyRow row = object(std::move(key), std::move(value));
    row.mayBeEmpty = true;
    return row;
}

KeyRow optional(KeyRow row) {
    row.optional = true;
    return row;
}

std::string RecordRow::documentOf(const std::vector<KeyRow>& some) const {
    std::string document;
    for (const KeyRow& row : some)
        document += (document.empty() ? "\"" : ",\"") + row.key + "\":" + row.value;
    return "{" + document + "}";
}

std::string RecordRow::documentWith(const std::string& key, const std::string& value) const {
    std::vector<KeyRow> changed = keys;
    const auto row =
        std::find_if(changed.begin(), changed.end(), [&](const KeyRow& each) { return each.key == key; });
    if (row == changed.end())
        throw std::logic_error("no such key");
    row->value = value;
    return documentOf(changed);
}

std::string RecordRow::documentWithout(const std::string& key) const {
    std::vector<KeyRow> rest = keys;
    std::erase_if(rest, [&](const KeyRow& row) { return row.key == key; });
    return documentOf(rest);
}

void PrintTo(const RecordRow& row, std::ostream* stream) { *stream << row.name; }

} // namespace kinovane::test
