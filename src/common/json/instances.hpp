// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/json/decoder.hpp"
#include "common/json/writer.hpp"

/// The public reading and writing functions of a record; named once, in the source that holds the record's
/// table.
namespace kinovane::detail {

template <class Record>
Record decodeRecord(std::string_view document) {
    return json::decode<Record>(document);
}

template <class Record>
std::string encodeRecord(const Record& record, JSONFormat format) {
    return json::encode(record, format);
}

} // namespace kinovane::detail

#define KINOVANE_JSON_READABLE(Record) /* NOLINT(cppcoreguidelines-macro-usage) */                           \
    template KINOVANE_EXPORT Record kinovane::detail::decodeRecord<Record>(std::string_view);

#define KINOVANE_JSON_WRITABLE(Record) /* NOLINT(cppcoreguidelines-macro-usage) */                           \
    KINOVANE_JSON_READABLE(Record)                                                                           \
    template KINOVANE_EXPORT std::string kinovane::detail::encodeRecord<Record>(const Record&, JSONFormat);
