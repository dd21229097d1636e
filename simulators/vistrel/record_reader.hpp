// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/json.hpp>

namespace vistrel {

/// Reads the members of one JSON object. A missing key or a value of the wrong type is a Refusal that says
/// where it stands, such as `shots[2].take: expected a whole number, found text`.
class RecordReader {
  public:
    /// `place` is where the object stands in the document, empty for the document itself.
    RecordReader(const boost::json::value& value, std::string place);

    std::string text(std::string_view key) const;
    std::int64_t integer(std::string_view key) const;
    double number(std::string_view key) const;
    bool flag(std::string_view key) const;

    /// An optional key that is missing or null is absent.
    std::optional<std::string> optionalText(std::string_view key) const;
    std::optional<std::int64_t> optionalInteger(std::string_view key) const;

    RecordReader record(std::string_view key) const;
    std::vector<std::string> texts(std::string_view key) const;

    template <class Record>
    std::vector<Record> records(std::string_view key, Record (*read)(const RecordReader&)) const {
        std::vector<Record> all;
        std::size_t index = 0;
        for (const boost::json::value& element : list(key))
            all.push_back(read(RecordReader(element, placeOf(key, index++))));
        return all;
    }

  private:
    /// The value of an optional key.
    const boost::json::value* find(std::string_view key) const;
    const boost::json::value& require(std::string_view key) const;
    const boost::json::array& list(std::string_view key) const;
    std::string placeOf(std::string_view key) const;
    std::string placeOf(std::string_view key, std::size_t index) const;

    const boost::json::object* object_;
    std::string place_;
};

} // namespace vistrel
