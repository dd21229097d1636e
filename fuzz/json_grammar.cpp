// SPDX-License-Identifier: Apache-2.0

#include "json_grammar.hpp"

#include <cstddef>

#include "unicode.hpp"

namespace kinovane::fuzz {

namespace {

constexpr int maxDepth = 512;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// A recursive-descent parser with one function for each rule of the grammar. Each function consumes its rule
/// from the front of the text and returns whether it was there.
class GrammarParser {
  public:
    explicit GrammarParser(std::string_view text) : rest_(text) {}

    bool document() {
        space();
        if (!value(0))
            return false;
        space();
        return rest_.empty();
    }

  private:
    bool value(int depth) {
        if (next('{'))
            return depth < maxDepth && members('}', [&] { return member(depth + 1); });
        if (next('['))
            return depth < maxDepth && members(']', [&] { return value(depth + 1); });
        if (next('"'))
            return string();
        return word("true") || word("false") || word("null") || number();
    }

    /// The members of an object, or the elements of a list, after the opening bracket.
    template <class Element>
    bool members(char end, Element element) {
        space();
        if (next(end))
            return true;
        do {
            space();
            if (!element())
                return false;
            space();
        } while (next(','));
        return next(end);
    }

    bool member(int depth) {
        if (!next('"') || !string())
            return false;
        space();
        if (!next(':'))
            return false;
        space();
        return value(depth);
    }

    /// The rest of a string, after the quote that opens it.
    bool string() {
        while (!rest_.empty()) {
            if (next('"'))
                return true;
            if (next('\\')) {
                if (!escape())
                    return false;
                continue;
            }
            const Sequence sequence = sequenceAt(rest_, 0);
            if (!sequence.valid || (sequence.length == 1 && rest_.front() < ' '))
                return false;
            rest_.remove_prefix(sequence.length);
        }
        return false;
    }

    bool escape() {
        if (next('u')) {
            const long unit = hexUnit();
            if (unit < 0 || (unit >= 0xDC00 && unit <= 0xDFFF))
                return false;
            if (unit < 0xD800 || unit > 0xDBFF)
                return true;
            if (!word("\\u"))
                return false;
            const long low = hexUnit();
            return low >= 0xDC00 && low <= 0xDFFF;
        }
        for (const char letter : {'"', '\\', '/', 'b', 'f', 'n', 'r', 't'})
            if (next(letter))
                return true;
        return false;
    }

    /// The value of four hexadecimal digits; negative when they are not there.
    long hexUnit() {
        long unit = 0;
        for (int digit = 0; digit < 4; ++digit) {
            if (rest_.empty())
                return -1;
            const std::size_t value = std::string_view("0123456789abcdefABCDEF").find(rest_.front());
            if (value == std::string_view::npos)
                return -1;
            unit = unit * 16 + static_cast<long>(value < 16 ? value : value - 6);
            rest_.remove_prefix(1);
        }
        return unit;
    }

    bool number() {
        next('-');
        if (!next('0') && digits() == 0)
            return false;
        if (next('.') && digits() == 0)
            return false;
        if (next('e') || next('E')) {
            if (!next('+'))
                next('-');
            return digits() > 0;
        }
        return true;
    }

    std::size_t digits() {
        std::size_t length = 0;
        while (length < rest_.size() && isDigit(rest_[length]))
            ++length;
        rest_.remove_prefix(length);
        return length;
    }

    void space() {
        while (!rest_.empty() && std::string_view(" \t\n\r").find(rest_.front()) != std::string_view::npos)
            rest_.remove_prefix(1);
    }

    bool next(char character) { return word({&character, 1}); }

    bool word(std::string_view expected) {
        const bool there = rest_.starts_with(expected);
        if (there)
            rest_.remove_prefix(expected.size());
        return there;
    }

    std::string_view rest_;
};

} // namespace

GrammarResult parseByGrammar(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    GrammarParser parser(text);
    GrammarResult result;
    result.valid = parser.document();
    const std::size_t first = text.find_first_not_of(" \t\n\r");
    result.isObject = result.valid && text[first] == '{';
    return result;
}

} // namespace kinovane::fuzz
