// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <kinovane/json.hpp>

#include "common/json/failure.hpp"
#include "common/json/table.hpp"
#include "common/json/text.hpp"
#include "common/text_buffer.hpp"

namespace kinovane::json {

/// Writes a record as JSON text, member by member in the order of the format, without building a tree first.
template <JSONFormat format>
class Writer {
  public:
    template <class T>
    void value(const T& value) {
        put(value, nullptr);
    }

    TextBuffer take() { return std::move(document_); }

  private:
    static constexpr bool pretty = format == JSONFormat::pretty;

    /// The position of the value being written. Its path is built only when something fails.
    struct Cursor {
        const Cursor* outer;
        std::string_view key;
        std::size_t index;
        bool inList;
    };

    template <class R>
    static constexpr auto rowOrder() {
        std::array<std::size_t, fieldCount<R>> order{};
        std::iota(order.begin(), order.end(), std::size_t{0});
        if constexpr (pretty) {
            std::sort(order.begin(), order.end(),
                      [](std::size_t left, std::size_t right) { return keys<R>[left] < keys<R>[right]; });
        }
        return order;
    }

    /// A member's key with quotes and colon. No key of a table needs escaping.
    template <std::size_t index, class R>
    static consteval auto keyText() {
        constexpr std::string_view key = keys<R>[index];
        constexpr std::string_view end = pretty ? "\": " : "\":";
        std::array<char, 1 + key.size() + end.size()> text{'"'};
        std::copy(key.begin(), key.end(), text.begin() + 1);
        std::copy(end.begin(), end.end(), text.end() - end.size());
        return text;
    }

    template <class T>
    void put(const T& value, const Cursor* cursor) {
        if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, std::string_view>) {
            if (!appendString(document_, value))
                fail(cursor, "the text is not UTF-8");
        } else if constexpr (std::is_same_v<T, bool>) {
            document_.append(value ? std::string_view("true") : "false");
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
            appendInteger(document_, value);
        } else if constexpr (std::is_same_v<T, double>) {
            if (!std::isfinite(value))
                fail(cursor, "the number is not finite");
            appendReal(document_, value);
        } else if constexpr (isList<T>) {
            putList(value, cursor);
        } else if constexpr (isMap<T>) {
            putMap(value, cursor);
        } else {
            checkTable<T>();
            open('{');
            [&]<std::size_t... at>(std::index_sequence<at...> /*rows*/) {
                (putRow<std::get<at>(rowOrder<T>())>(value, cursor), ...);
            }(std::make_index_sequence<fieldCount<T>>{});
            close('}');
        }
    }

    template <std::size_t index, class R>
    void putRow(const R& record, const Cursor* cursor) {
        constexpr auto& row = std::get<index>(Table<R>::fields);
        const auto& member = record.*row.member;
        const auto putMember = [&](const auto& value) {
            separate();
            static constexpr auto key = keyText<index, R>();
            document_.append(std::string_view(key.data(), key.size()));
            const Cursor inner{cursor, row.key, 0, false};
            put(value, &inner);
        };
        if constexpr (!isOptional<std::remove_cvref_t<decltype(member)>>)
            putMember(member);
        else if (member)
            putMember(*member);
    }

    template <class T>
    void putList(const T& list, const Cursor* cursor) {
        open('[');
        Cursor inner{cursor, {}, 0, true};
        for (const auto& element : list) {
            separate();
            put(element, &inner);
            ++inner.index;
        }
        close(']');
    }

    template <class T>
    void putMap(const T& map, const Cursor* cursor) {
        open('{');
        for (const auto& [key, value] : map) {
            separate();
            const Cursor inner{cursor, key, 0, false};
            if (!appendString(document_, key))
                fail(cursor, "a key is not UTF-8");
            document_.append(std::string_view(pretty ? ": " : ":"));
            put(value, &inner);
        }
        close('}');
    }

    void open(char bracket) {
        document_.append(bracket);
        if constexpr (pretty)
            ++depth_;
        first_ = true;
    }

    void separate() {
        const bool comma = !std::exchange(first_, false);
        if constexpr (pretty)
            newLine(comma);
        else if (comma)
            document_.append(',');
    }

    void close(char bracket) {
        if constexpr (pretty) {
            --depth_;
            if (!first_)
                newLine(false);
        }
        document_.append(bracket);
        first_ = false;
    }

    /// Appends the comma, if one is needed, the line break and the indentation.
    void newLine(bool comma) {
        static constexpr std::string_view beginning = ",\n                    ";
        static constexpr std::size_t mostSpaces = beginning.size() - 2;
        const std::size_t spaces = 2 * depth_;
        document_.append(beginning.substr(comma ? 0 : 1, (comma ? 2 : 1) + std::min(spaces, mostSpaces)));
        for (std::size_t space = mostSpaces; space < spaces; ++space)
            document_.append(' ');
    }

    [[noreturn]] static void fail(const Cursor* cursor, std::string_view what) {
        Failure failure(": " + std::string(what));
        for (; cursor != nullptr; cursor = cursor->outer)
            if (cursor->inList)
                failure.prependIndex(cursor->index);
            else
                failure.prependKey(cursor->key);
        throw JSONEncodingError(failure.path, failure.message());
    }

    TextBuffer document_;
    std::size_t depth_ = 0;
    bool first_ = true; ///< The innermost object or list is still empty.
};

/// The document of a record, in chunks. Throws JSONEncodingError.
template <class T>
TextBuffer write(const T& value, JSONFormat format) {
    const auto writeWith = [&](auto writer) {
        writer.value(value);
        return writer.take();
    };
    return format == JSONFormat::pretty ? writeWith(Writer<JSONFormat::pretty>())
                                        : writeWith(Writer<JSONFormat::compact>());
}

/// The document of a record. Throws JSONEncodingError.
template <class T>
std::string encode(const T& value, JSONFormat format) {
    return write(value, format).join();
}

} // namespace kinovane::json
