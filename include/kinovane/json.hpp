// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <kinovane/export.hpp>

/// Reading and writing the records of this library as JSON text.
namespace kinovane {

/// How a record is laid out as text. In both forms "/" is never escaped, text that is not ASCII stands as it
/// is, doubles take the shortest form that reads back equal, and absent optionals are left out.
enum class JSONFormat {
    compact, ///< No white space; keys in the order in which the record declares them.
    pretty,  ///< Indented by two spaces, one member a line; keys sorted in every object.
};

/// Which JSON forms a record has.
enum class JSONForm { none, reading, readingAndWriting };

/// The JSON forms of `Record`. Set beside each record of the public headers; not meant to be set elsewhere.
template <class Record>
inline constexpr JSONForm jsonForm = JSONForm::none;

template <class Record>
concept JSONReadable = jsonForm<Record> != JSONForm::none;

template <class Record>
concept JSONWritable = jsonForm<Record> == JSONForm::readingAndWriting;

/// What JSONDecodingError and JSONEncodingError have in common: a place in the document and a message.
/// Copying never throws.
class KINOVANE_EXPORT JSONError : public std::exception {
  public:
    JSONError(std::string path, std::string message);
    JSONError(const JSONError&) noexcept;
    JSONError& operator=(const JSONError&) noexcept;
    ~JSONError() override;

    /// The whole message, fit to be shown to a user: "artifacts[3].bytes: expected an integer, found a
    /// string".
    const char* what() const noexcept override;

    /// The place, such as "artifacts[3].bytes"; empty when the whole document is meant, as in a syntax error.
    /// A key of more than 200 characters is cut after the 200th and followed by "…", here and in `what`.
    const std::string& path() const noexcept;

  private:
    struct State;
    std::shared_ptr<const State> state_;
};

/// A document that is not valid JSON (the message gives line and column), or that does not hold the record.
class KINOVANE_EXPORT JSONDecodingError : public JSONError {
  public:
    using JSONError::JSONError;
    ~JSONDecodingError() override;
};

/// A record holding what JSON cannot carry: a number that is not finite, or text that is not UTF-8.
class KINOVANE_EXPORT JSONEncodingError : public JSONError {
  public:
    using JSONError::JSONError;
    ~JSONEncodingError() override;
};

namespace detail {
template <class Record>
KINOVANE_EXPORT Record decodeRecord(std::string_view document);
template <class Record>
KINOVANE_EXPORT std::string encodeRecord(const Record& record, JSONFormat format);
} // namespace detail

/// Reads one record from the UTF-8 text of a whole JSON document. Unknown keys are ignored; the last of two
/// equal keys wins; a byte-order mark at the start is skipped.
///
/// Throws JSONDecodingError. A syntax error anywhere comes first; otherwise, of several wrong fields, the one
/// declared first is reported. Safe to call from several threads at once.
template <JSONReadable Record>
Record decodeJSON(std::string_view document) {
    return detail::decodeRecord<Record>(document);
}

/// Writes one record as a JSON document, without a line break at the end.
///
/// Throws JSONEncodingError naming the field that JSON cannot carry. Safe to call from several threads at
/// once.
template <JSONWritable Record>
std::string encodeJSON(const Record& record, JSONFormat format = JSONFormat::compact) {
    return detail::encodeRecord<Record>(record, format);
}

} // namespace kinovane
