// SPDX-License-Identifier: Apache-2.0

#include "support/record_rows.hpp"

#include <algorithm>
#include <stdexcept>

namespace kinovane::test {

KeyRow text(std::string key) {
    std::string value = '"' + key + '"';
    return {std::move(key), KeyType::text, std::move(value)};
}
KeyRow integer(std::string key, std::string value) {
    return {std::move(key), KeyType::integer, std::move(value)};
}
KeyRow real(std::string key, std::string value) { return {std::move(key), KeyType::real, std::move(value)}; }
KeyRow boolean(std::string key, std::string value) {
    return {std::move(key), KeyType::boolean, std::move(value)};
}
KeyRow list(std::string key, std::string value) { return {std::move(key), KeyType::list, std::move(value)}; }
KeyRow object(std::string key, std::string value) {
    return {std::move(key), KeyType::object, std::move(value)};
}
KeyRow map(std::string key, std::string value) { return {std::move(key), KeyType::map, std::move(value)}; }

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

} // namespace kinovane::test
