// SPDX-License-Identifier: Apache-2.0

#include "memory/hostile_documents.hpp"

#include <algorithm>
#include <set>

#include "memory/document_templates.hpp"

namespace kinovane::test {

namespace {

using json::Kind;
using json::Row;
using Use = std::function<void(const HostileDocument&)>;

std::string quotedText(std::string_view text) { return '"' + std::string(text) + '"'; }

/// A string of escaped line breaks, which a decoder cannot use without unescaping it.
std::string escapes(std::size_t size) { return quotedText(repeatedTo(size, R"(\n)")); }

std::string zeros(std::size_t size) { return repeatedTo(size, "0"); }

/// The document with one more member at its end.
std::string extended(std::string document, std::string_view key, std::string_view value) {
    document.pop_back();
    document += document.ends_with('{') ? "" : ",";
    return document + quotedText(key) + ':' + std::string(value) + '}';
}

std::string truncated(std::string document) {
    document.pop_back();
    return document;
}

/// A map with wrong values, followed by right values for the same keys, except for the last `left` keys.
std::string replaced(const DocumentTemplate& target, std::size_t size, std::size_t left) {
    const DocumentTemplate plain{{}, target.kind, {}, {}, target.elements};
    std::string wrong = plain.filledWith(target.wrongElement(), size / 2);
    std::string right = wrong;
    const std::string oldValue = ':' + std::string(target.wrongElement());
    const std::string newValue = ':' + target.elements.front();
    std::size_t kept = right.size() - 1;
    for (; left > 0; --left)
        kept = right.rfind(',', kept - 1);
    std::string replacements = right.substr(1, kept - 1) + ',';
    std::string text;
    for (std::size_t position = 0; position < replacements.size();) {
        const std::size_t end = replacements.find(',', position);
        text += replacements.substr(position, end - position - oldValue.size()) + newValue + ',';
        position = end + 1;
    }
    text.pop_back();
    wrong.back() = ',';
    return target.before + wrong + text + '}' + target.after;
}

/// The last member of a record that is a string, if any.
const Row* textOf(const json::Shape& record) {
    const auto row = std::find_if(record.rows.rbegin(), record.rows.rend(),
                                  [](const Row& each) { return each.shape->kind == Kind::text; });
    return row == record.rows.rend() ? nullptr : &*row;
}

void useListOrMap(const DocumentTemplate& target, const json::Shape& record, std::size_t size,
                  const Use& use) {
    const auto refused = [&](std::string sentence, std::string text) {
        use({target.name + ": " + std::move(sentence), std::move(text), false});
    };
    const auto accepted = [&](std::string sentence, std::string text) {
        use({target.name + ": " + std::move(sentence), std::move(text), true});
    };
    for (const std::string& element : target.elements) {
        const std::string text = target.filledWith(element, size);
        accepted("elements " + element, text);
        refused("elements " + element + ", truncated", truncated(text));
    }
    const std::string& smallest = target.elements.front();
    const std::string wrong(target.wrongElement());
    refused("wrong elements", target.filledWith(wrong, size));
    refused("wrong elements, truncated", truncated(target.filledWith(wrong, size)));
    refused("the first element is wrong", target.startingWith(wrong, smallest, size));
    refused("the first element is wrong, truncated", truncated(target.startingWith(wrong, smallest, size)));
    refused("the last element is wrong", target.endingWith(smallest, wrong, size));
    refused("nulls", target.filledWith("null", size));
    refused("many elements and then a long escaped text, truncated",
            truncated(extended(target.filledWith(smallest, size / 2), "x", escapes(size / 2))));
    if (const Row* row = textOf(record); row != nullptr) {
        const std::string half = extended(target.filledWith(smallest, size / 2), row->key, escapes(size / 2));
        accepted("many elements and then a long escaped text", half);
        refused("the same, truncated", truncated(half));
        refused("many elements and then a long number for a text",
                extended(target.filledWith(smallest, size / 4), row->key, "1." + zeros(size * 3 / 4)));
    }
    if (target.kind == Kind::map) {
        accepted("wrong values, all of them replaced", replaced(target, size, 0));
        refused("wrong values, all but the last replaced", replaced(target, size, 1));
        refused("wrong values, the second half replaced", replaced(target, size, 20'000));
        const std::string key = quotedText(zeros(size));
        accepted("one long key", target.with('{' + key + ':' + smallest + '}'));
        refused("one long key, wrong", target.with('{' + key + ':' + wrong + '}'));
        const std::string escaped = escapes(size);
        refused("one long escaped key, wrong", target.with('{' + escaped + ':' + wrong + '}'));
    }
}

void useValue(const DocumentTemplate& target, std::size_t size, const Use& use) {
    const auto with = [&](std::string sentence, const std::string& value, bool accepted) {
        use({target.name + ": " + std::move(sentence), target.with(value), accepted});
        use({target.name + ": the same, truncated", truncated(target.with(value)), false});
    };
    if (target.kind == Kind::text) {
        with("a long text", quotedText(zeros(size)), true);
        with("a long escaped text", escapes(size), true);
    } else {
        with("a long escaped text for another value", escapes(size), false);
    }
    const bool number = target.kind == Kind::integer || target.kind == Kind::real;
    with("a number with many digits", "1." + zeros(size), number);
    with("a number with many digits of which the last counts", "1." + zeros(size) + "1",
         target.kind == Kind::real);
    with("a number with many digits before the point", '1' + zeros(size), false);
}

} // namespace

void forEachHostileDocument(const json::Shape& record, std::size_t size, const Use& use) {
    std::set<Kind> kinds; // One value of each kind is enough.
    for (const DocumentTemplate& target : templatesOf(record))
        if (target.isListOrMap())
            useListOrMap(target, record, size, use);
        else if (kinds.insert(target.kind).second)
            useValue(target, size, use);
    for (const DocumentTemplate& target : incompleteTemplatesOf(record))
        if (target.isListOrMap())
            use({target.name + ": a key is missing", target.filledWith(target.elements.front(), size),
                 false});

    const std::string document = smallestDocument(record);
    const std::string brackets = std::string(500, '[') + std::string(500, ']');
    use({"a long unknown key", extended(document, zeros(size), "0"), true});
    use({"many unknown keys", extended(document, "x", '{' + repeatedTo(size, R"("":0,)") + R"("":0})"),
         true});
    use({"lists in lists", extended(document, "x", '[' + repeatedTo(size, brackets + ',') + "0]"), true});
    use({"a long unknown text", extended(document, "x", escapes(size)), true});
    use({"a long unknown number", extended(document, "x", '1' + zeros(size)), true});
    use({"too many levels", extended(document, "x", repeatedTo(size, "[")), false});
    use({"a long unknown key, truncated", truncated(extended(document, zeros(size), "0")), false});
    use({"white space", document + repeatedTo(size, " ") + 'x', false});
}

} // namespace kinovane::test
