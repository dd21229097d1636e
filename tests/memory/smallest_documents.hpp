// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/json/shape.hpp"

/// Documents in which one place is as large as wanted, and everything else as small as a record allows. They
/// are made from the record tables, so that a new record, or a new member, is tested without further ado.
namespace kinovane::test {

/// A value somewhere in a record's document.
struct Place {
    std::string name; ///< Such as "shots[].characters".
    json::Kind kind;  ///< Not a record.
    std::string before;
    std::string after;
    std::vector<std::string> elements; ///< Of a list, or values of a map: the smallest, and others.

    std::string holding(std::string_view value) const;
    /// A list, or a map, of `size` bytes with this element throughout. The keys of a map are distinct.
    std::string filledWith(std::string_view element, std::size_t size) const;
    /// The same with another element first or last.
    std::string startingWith(std::string_view first, std::string_view element, std::size_t size) const;
    std::string endingWith(std::string_view element, std::string_view last, std::size_t size) const;

    bool holdsSeveral() const { return kind == json::Kind::list || kind == json::Kind::map; }
    /// A value that is none of the elements.
    std::string_view wrongElement() const;
};

/// Every place of a record's document, and of the records that it holds.
std::vector<Place> placesOf(const json::Shape& record);

/// The same places, in documents that lack a required key. Empty when no key is required.
std::vector<Place> placesOfIncomplete(const json::Shape& record);

/// The record's smallest document.
std::string smallestDocument(const json::Shape& record);

/// `text`, as often as fits `size` bytes.
std::string repeatedTo(std::size_t size, std::string_view text);

} // namespace kinovane::test
