// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/json/shape.hpp"

/// Documents in which one value may have any size, and everything else is as small as the record allows. They
/// are made from the record tables, so that new records and members are tested automatically.
namespace kinovane::test {

/// A document of a record with one value left open.
struct DocumentTemplate {
    std::string name;                  ///< The path of the value, such as "shots[].characters".
    json::Kind kind;                   ///< Of the value; never a record.
    std::string before;                ///< The text of the document before the value.
    std::string after;                 ///< The text of the document after the value.
    std::vector<std::string> elements; ///< Elements for a list or a map; the smallest one first.

    /// The document with this value.
    std::string with(std::string_view value) const;
    /// The document with a list or a map of about `size` bytes that consists of this element. The keys of a
    /// map are distinct.
    std::string filledWith(std::string_view element, std::size_t size) const;
    /// The same with another first element.
    std::string startingWith(std::string_view first, std::string_view element, std::size_t size) const;
    /// The same with another last element.
    std::string endingWith(std::string_view element, std::string_view last, std::size_t size) const;

    bool isListOrMap() const { return kind == json::Kind::list || kind == json::Kind::map; }
    /// A value of a type that the list or map does not allow.
    std::string_view wrongElement() const;
};

/// One template for each value in a record's document, including the values of nested records.
std::vector<DocumentTemplate> templatesOf(const json::Shape& record);

/// The same for documents in which a required key is missing. Empty when no key is required.
std::vector<DocumentTemplate> incompleteTemplatesOf(const json::Shape& record);

/// The record's smallest document.
std::string smallestDocument(const json::Shape& record);

/// `text` repeated until it has at least `size` bytes.
std::string repeatedTo(std::size_t size, std::string_view text);

} // namespace kinovane::test
