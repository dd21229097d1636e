// SPDX-License-Identifier: Apache-2.0

#include "memory/smallest_documents.hpp"

#include <algorithm>

namespace kinovane::test {

namespace {

using json::Kind;
using json::Row;
using json::Shape;

std::string member(const Row& row, std::string_view value) {
    return '"' + std::string(row.key) + "\":" + std::string(value);
}

/// The smallest value of a shape, but with this text in place of every text.
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

/// Every required member of a record but two, with a comma after each.
std::string membersBut(const Shape& record, const Row& one, const Row* other) {
    std::string members;
    for (const Row& row : record.rows)
        if (row.required && &row != &one && &row != other)
            members += member(row, smallestValue(*row.shape, "")) + ',';
    return members;
}

void addPlaces(const Shape& shape, const Place& outer, std::vector<Place>& places);

/// The smallest element; one with texts that do not fit into a std::string itself; and for a record that
/// holds lists or maps, one with a short one in it and one with as many elements as make most of its capacity
/// go to waste.
std::vector<std::string> elementsOf(const Shape& element) {
    std::vector<std::string> elements{smallestValue(element, ""), smallestValue(element, "0123456789abcdef")};
    std::vector<Place> inner;
    addPlaces(element, {}, inner);
    for (const Place& place : inner) {
        if (!place.holdsSeveral())
            continue;
        const std::string& smallest = place.elements.front();
        elements.push_back(place.filledWith(smallest, smallest.size()));
        elements.push_back(place.filledWith(smallest, 33 * (smallest.size() + 1)));
    }
    return elements;
}

void addMembers(const Shape& record, const Place& outer, const Row* missing, std::vector<Place>& places) {
    for (const Row& row : record.rows) {
        if (&row == missing)
            continue;
        Place place;
        place.name = outer.name + (outer.name.empty() ? "" : ".") + std::string(row.key);
        place.before = outer.before + '{' + membersBut(record, row, missing) + member(row, "");
        place.after = '}' + outer.after;
        addPlaces(*row.shape, place, places);
    }
}

void addPlaces(const Shape& shape, const Place& outer, std::vector<Place>& places) {
    if (shape.kind == Kind::record) {
        addMembers(shape, outer, nullptr, places);
        return;
    }
    Place place = outer;
    place.kind = shape.kind;
    if (place.holdsSeveral())
        place.elements = elementsOf(*shape.element);
    places.push_back(place);
    if (shape.kind == Kind::list)
        addPlaces(*shape.element, {outer.name + "[]", {}, outer.before + '[', ']' + outer.after, {}}, places);
    else if (shape.kind == Kind::map)
        addPlaces(*shape.element,
                  {outer.name + ".key", {}, outer.before + R"({"key":)", '}' + outer.after, {}}, places);
}

/// The shortest keys, each other than those before.
class Keys {
  public:
    explicit Keys(bool wanted) : wanted_(wanted) {}

    /// The next key and its colon, when keys are wanted.
    std::string next() {
        if (!wanted_)
            return {};
        static constexpr std::string_view digits =
            "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
        std::string key = "\":";
        for (std::size_t rest = ++count_; rest != 0; rest /= digits.size())
            key.insert(key.begin(), digits[rest % digits.size()]);
        return '"' + key;
    }

  private:
    bool wanted_;
    std::size_t count_ = 0;
};

} // namespace

std::string Place::holding(std::string_view value) const { return before + std::string(value) + after; }

std::string Place::filledWith(std::string_view element, std::size_t size) const {
    return startingWith(element, element, size);
}

std::string Place::startingWith(std::string_view first, std::string_view element, std::size_t size) const {
    Keys keys(kind == Kind::map);
    std::string text = before + (kind == Kind::map ? '{' : '[') + keys.next() + std::string(first);
    const std::size_t end = before.size() + size;
    text.reserve(end + 1024);
    while (text.size() < end)
        (text += ',').append(keys.next()).append(element);
    return text + (kind == Kind::map ? '}' : ']') + after;
}

std::string Place::endingWith(std::string_view element, std::string_view last, std::size_t size) const {
    std::string text = filledWith(element, size);
    const std::string end = (kind == Kind::map ? R"(,"last":)" : ",") + std::string(last);
    return text.insert(text.size() - after.size() - 1, end);
}

std::string_view Place::wrongElement() const { return elements.front() == "0" ? R"("")" : "0"; }

std::vector<Place> placesOf(const json::Shape& record) {
    std::vector<Place> places;
    addPlaces(record, {}, places);
    return places;
}

std::vector<Place> placesOfIncomplete(const json::Shape& record) {
    std::vector<Place> places;
    const auto required =
        std::find_if(record.rows.begin(), record.rows.end(), [](const Row& row) { return row.required; });
    if (required != record.rows.end())
        addMembers(record, {}, &*required, places);
    return places;
}

std::string smallestDocument(const json::Shape& record) { return smallestValue(record, ""); }

std::string repeatedTo(std::size_t size, std::string_view text) {
    std::string result(text);
    while (result.size() < size)
        result += result.substr(0, (size - result.size() + text.size() - 1) / text.size() * text.size());
    return result;
}

} // namespace kinovane::test
