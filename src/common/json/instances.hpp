// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/json/decoder.hpp"
#include "common/json/writer.hpp"

/// Defines decodeJSON and encodeJSON for a record. Used once for each, in the source that includes the
/// record's table. `jsonForm<Record>` in the public header declares which of the two there are; a definition
/// that does not match it does not compile.
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

// NOLINTBEGIN(cppcoreguidelines-macro-usage): explicit instantiations, which no function can make

#define KINOVANE_JSON_READABLE(Record)                                                                       \
    static_assert(kinovane::jsonForm<Record> == kinovane::JSONForm::reading,                                 \
                  "jsonForm<" #Record "> declares another form");                                            \
    template KINOVANE_EXPORT Record kinovane::detail::decodeRecord<Record>(std::string_view);

#define KINOVANE_JSON_WRITABLE(Record)                                                                       \
    static_assert(kinovane::jsonForm<Record> == kinovane::JSONForm::readingAndWriting,                       \
                  "jsonForm<" #Record "> declares another form");                                            \
    template KINOVANE_EXPORT Record kinovane::detail::decodeRecord<Record>(std::string_view);                \
    template KINOVANE_EXPORT std::string kinovane::detail::encodeRecord<Record>(const Record&, JSONFormat);

// NOLINTEND(cppcoreguidelines-macro-usage)
