// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <kinovane/export.hpp>

/// Decoding and encoding the records of this library as JSON text.
namespace kinovane {

/// The layout of JSON text. In both formats "/" and characters beyond ASCII are not escaped, doubles have the
/// shortest form that reads back equal, and absent optionals are left out.
enum class JSONFormat {
    compact, ///< No white space; keys in the order in which the record declares them.
    pretty,  ///< Indented by two spaces, one member a line; keys sorted in every object.
};

/// Whether a record can be decoded only, or encoded too.
enum class JSONForm { none, reading, readingAndWriting };

/// The JSON form of `Record`. Specialised in the public header of each record, and nowhere else.
template <class Record>
inline constexpr JSONForm jsonForm = JSONForm::none;

/// The records that decodeJSON decodes.
template <class Record>
concept JSONReadable = jsonForm<Record> != JSONForm::none;

/// The records that encodeJSON encodes.
template <class Record>
concept JSONWritable = jsonForm<Record> == JSONForm::readingAndWriting;

/// The base of JSONDecodingError and JSONEncodingError: a path in the document and a message. Copying never
/// throws.
class KINOVANE_EXPORT JSONError : public std::exception {
  public:
    /// For the library.
    JSONError(std::string path, std::string message);
    JSONError(const JSONError&) noexcept;
    JSONError& operator=(const JSONError&) noexcept;
    ~JSONError() override;

    /// The whole message, fit to be shown to a user: "artifacts[3].bytes: expected an integer, found a
    /// string".
    const char* what() const noexcept override;

    /// The path of the value, such as "artifacts[3].bytes"; empty for the whole document, as in a syntax
    /// error. A key of more than 200 characters is cut after the 200th and followed by "…", here and in
    /// `what`.
    const std::string& path() const noexcept;

  private:
    struct State;
    std::shared_ptr<const State> state_;
};

/// The document is not valid JSON (the message gives line and column), or a value in it is missing or wrong.
class KINOVANE_EXPORT JSONDecodingError : public JSONError {
  public:
    using JSONError::JSONError;
    ~JSONDecodingError() override;
};

/// The record holds what JSON cannot: a number that is not finite, or text that is not UTF-8.
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

/// Decodes one record from the UTF-8 text of a whole JSON document. Unknown keys are ignored; of equal keys
/// the last is used; a byte-order mark at the start is skipped.
///
/// Throws JSONDecodingError. A syntax error anywhere is reported before wrong fields, and of several wrong
/// fields the one declared first. Safe to call from several threads at once.
template <JSONReadable Record>
Record decodeJSON(std::string_view document) {
    return detail::decodeRecord<Record>(document);
}

/// Encodes one record as a JSON document, without a line break at the end.
///
/// Throws JSONEncodingError with the path of the field that JSON cannot hold. Safe to call from several
/// threads at once.
template <JSONWritable Record>
std::string encodeJSON(const Record& record, JSONFormat format = JSONFormat::compact) {
    return detail::encodeRecord<Record>(record, format);
}

} // namespace kinovane
