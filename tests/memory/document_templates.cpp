// SPDX-License-Identifier: Apache-2.0

#include "memory/document_templates.hpp"

#include <algorithm>

namespace kinovane::test {

namespace {

using json::Kind;
using json::Row;
using json::Shape;

std::string member(const Row& row, std::string_view value) {
    return '"' + std::string(row.key) + "\":" + std::string(value);
}

/// The smallest value of a shape, with `text` as the value of every string.
std::string smallestValue(const Shape& shape, std::string_view text) {
    switch (shape.kind) {
    case Kind::text:
        return '"' + std::string(text) + '"';
    case Kind::integer:
    case Kind::real:
        return "0";
    case Kind::boolean:
        return "true";
    case Kind::list:
        return "[]";
    case Kind::map:
        return "{}";
    case Kind::record:
        break;
    }
    std::string members;
    for (const Row& row : shape.rows)
        if (row.required)
            members += (members.empty() ? "" : ",") + member(row, smallestValue(*row.shape, text));
    return '{' + members + '}';
}

/// Every required member of a record except two, with a comma after each.
std::string membersExcept(const Shape& record, const Row& one, const Row* other) {
    std::string members;
    for (const Row& row : record.rows)
        if (row.required && &row != &one && &row != other)
            members += member(row, smallestValue(*row.shape, "")) + ',';
    return members;
}

void addTemplates(const Shape& shape, const DocumentTemplate& outer,
                  std::vector<DocumentTemplate>& templates);

/// The smallest element, one with strings too long for the small-string optimisation, and for a record with
/// lists or maps, one with a short list and one with 33 elements, just above a power of two, so that almost
/// half of the capacity of a vector is unused.
std::vector<std::string> elementsOf(const Shape& element) {
    std::vector<std::string> elements{smallestValue(element, ""), smallestValue(element, "0123456789abcdef")};
    std::vector<DocumentTemplate> inner;
    addTemplates(element, {}, inner);
    for (const DocumentTemplate& document : inner) {
        if (!document.isListOrMap())
            continue;
        const std::string& smallest = document.elements.front();
        elements.push_back(document.filledWith(smallest, smallest.size()));
        elements.push_back(document.filledWith(smallest, 33 * (smallest.size() + 1)));
    }
    return elements;
}

void addMembers(const Shape& record, const DocumentTemplate& outer, const Row* missing,
                std::vector<DocumentTemplate>& templates) {
    for (const Row& row : record.rows) {
        if (&row == missing)
            continue;
        DocumentTemplate document;
        document.name = outer.name + (outer.name.empty() ? "" : ".") + std::string(row.key);
        document.before = outer.before + '{' + membersExcept(record, row, missing) + member(row, "");
        document.after = '}' + outer.after;
        addTemplates(*row.shape, document, templates);
    }
}

void addTemplates(const Shape& shape, const DocumentTemplate& outer,
                  std::vector<DocumentTemplate>& templates) {
    if (shape.kind == Kind::record) {
        addMembers(shape, outer, nullptr, templates);
        return;
    }
    DocumentTemplate document = outer;
    document.kind = shape.kind;
    if (document.isListOrMap())
        document.elements = elementsOf(*shape.element);
    templates.push_back(document);
    if (shape.kind == Kind::list)
        addTemplates(*shape.element, {outer.name + "[]", {}, outer.before + '[', ']' + outer.after, {}},
                     templates);
    else if (shape.kind == Kind::map)
        addTemplates(*shape.element,
                     {outer.name + ".key", {}, outer.before + R"({"key":)", '}' + outer.after, {}},
                     templates);
}

/// Generates distinct keys, the shortest first.
class Keys {
  public:
    explicit Keys(bool isMap) : isMap_(isMap) {}

    /// The next key and a colon, or nothing when the document is a list.
    std::string next() {
        if (!isMap_)
            return {};
        static constexpr std::string_view digits =
            "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
        std::string key = "\":";
        for (std::size_t rest = ++count_; rest != 0; rest /= digits.size())
            key.insert(key.begin(), digits[rest % digits.size()]);
        return '"' + key;
    }

  private:
    bool isMap_;
    std::size_t count_ = 0;
};

} // namespace

std::string DocumentTemplate::with(std::string_view value) const {
    return before + std::string(value) + after;
}

std::string DocumentTemplate::filledWith(std::string_view element, std::size_t size) const {
    return startingWith(element, element, size);
}

std::string DocumentTemplate::startingWith(std::string_view first, std::string_view element,
                                           std::size_t size) const {
    Keys keys(kind == Kind::map);
    std::string text = before + (kind == Kind::map ? '{' : '[') + keys.next() + std::string(first);
    const std::size_t end = before.size() + size;
    text.reserve(end + 1024);
    while (text.size() < end)
        (text += ',').append(keys.next()).append(element);
    return text + (kind == Kind::map ? '}' : ']') + after;
}

std::string DocumentTemplate::endingWith(std::string_view element, std::string_view last,
                                         std::size_t size) const {
    std::string text = filledWith(element, size);
    const std::string end = (kind == Kind::map ? R"(,"last":)" : ",") + std::string(last);
    return text.insert(text.size() - after.size() - 1, end);
}

std::string_view DocumentTemplate::wrongElement() const { return elements.front() == "0" ? R"("")" : "0"; }

std::vector<DocumentTemplate> templatesOf(const json::Shape& record) {
    std::vector<DocumentTemplate> templates;
    addTemplates(record, {}, templates);
    return templates;
}

std::vector<DocumentTemplate> incompleteTemplatesOf(const json::Shape& record) {
    std::vector<DocumentTemplate> templates;
    const auto required =
        std::find_if(record.rows.begin(), record.rows.end(), [](const Row& row) { return row.required; });
    if (required != record.rows.end())
        addMembers(record, {}, &*required, templates);
    return templates;
}

std::string smallestDocument(const json::Shape& record) { return smallestValue(record, ""); }

std::string repeatedTo(std::size_t size, std::string_view text) {
    std::string result(text);
    while (result.size() < size)
        result += result.substr(0, (size - result.size() + text.size() - 1) / text.size() * text.size());
    return result;
}

} // namespace kinovane::test
