// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "common/json/table.hpp"

/// A description of a type for the decoder, made at compile time from the record tables, so that one decoder
/// serves all records.
namespace kinovane::json {

enum class Kind : std::uint8_t { text, integer, real, boolean, list, map, record };

struct Row;

struct Shape {
    Kind kind = Kind::text;

    /// Empties the value and frees all its memory.
    void (*reset)(void* value) = nullptr;

    /// The shape of a list's or a map's values.
    const Shape* element = nullptr;
    /// How many bytes a list, or a map, allocates for each value.
    std::size_t elementSize = 0;
    /// Adds an empty element to a list and returns its address.
    void* (*append)(void* list) = nullptr;
    void (*reserve)(void* list, std::size_t capacity) = nullptr;
    /// Adds an empty value to a map, or empties the one with an equal key, and returns its address.
    void* (*insert)(void* map, std::string_view key) = nullptr;

    std::span<const Row> rows;
    std::uint64_t requiredRows = 0; ///< One bit a row.

    /// Only of a record with a form: makes an empty form, and makes the record of a filled one.
    std::shared_ptr<void> (*makeForm)() = nullptr;
    void (*takeForm)(void* form, void* record) = nullptr;
};

/// A row of a record's table: one member.
struct Row {
    std::string_view key;
    const Shape* shape = nullptr;
    bool required = true;
    void* (*open)(void* record) = nullptr; ///< Makes an optional member present; the address of its value.
    void (*clear)(void* record) = nullptr; ///< Makes the member empty or absent.
};

/// Specialised for a record that differs from its document: `Form` is a record with the members of the
/// document, and `static Record make(Form&&)` converts it.
template <class Record>
struct DecodedThrough;

template <class T>
concept HasForm = requires { typename DecodedThrough<T>::Form; };

namespace detail {

template <class T>
consteval Shape makeShape();
template <class T>
inline constexpr Shape shape = makeShape<T>();

template <class T>
struct Present {
    using Type = T;
};
template <class T>
struct Present<std::optional<T>> {
    using Type = T;
};

template <class R, std::size_t index>
consteval Row makeRow() {
    constexpr auto& row = std::get<index>(Table<R>::fields);
    using Member = typename std::remove_cvref_t<decltype(row)>::MemberType;
    Row result;
    result.key = row.key;
    result.shape = &shape<typename Present<Member>::Type>;
    result.required = !isOptional<Member>;
    result.open = [](void* record) -> void* {
        auto& member = static_cast<R*>(record)->*std::get<index>(Table<R>::fields).member;
        if constexpr (isOptional<Member>)
            return std::addressof(member.emplace());
        else
            return std::addressof(member);
    };
    result.clear = [](void* record) {
        static_cast<R*>(record)->*std::get<index>(Table<R>::fields).member = Member();
    };
    return result;
}

template <class R, std::size_t... index>
consteval auto makeRows(std::index_sequence<index...> /*rows*/) {
    return std::array<Row, sizeof...(index)>{makeRow<R, index>()...};
}

template <Record R>
inline constexpr auto rows = makeRows<R>(std::make_index_sequence<fieldCount<R>>{});

template <Record R>
consteval void fillRecord(Shape& result) {
    checkTable<R>();
    static_assert(fieldCount<R> <= 64, "the decoder keeps one bit a row in 64 bits");
    result.rows = rows<R>;
    for (std::size_t index = 0; index < fieldCount<R>; ++index)
        if (rows<R>[index].required)
            result.requiredRows |= std::uint64_t{1} << index;
}

template <class T>
consteval Shape makeShape() {
    Shape result;
    result.reset = [](void* value) {
        // Moved out first: an assignment may leave memory allocated.
        [[maybe_unused]] const T old = std::move(*static_cast<T*>(value));
        *static_cast<T*>(value) = T();
    };
    if constexpr (std::is_same_v<T, std::string>) {
        result.kind = Kind::text;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        result.kind = Kind::integer;
    } else if constexpr (std::is_same_v<T, double>) {
        result.kind = Kind::real;
    } else if constexpr (std::is_same_v<T, bool>) {
        result.kind = Kind::boolean;
    } else if constexpr (isList<T>) {
        result.kind = Kind::list;
        result.element = &shape<typename T::value_type>;
        result.elementSize = sizeof(typename T::value_type);
        result.append = [](void* list) -> void* {
            return std::addressof(static_cast<T*>(list)->emplace_back());
        };
        result.reserve = [](void* list, std::size_t capacity) { static_cast<T*>(list)->reserve(capacity); };
    } else if constexpr (isMap<T>) {
        result.kind = Kind::map;
        result.element = &shape<typename T::mapped_type>;
        // A node has three links and a colour beside the value.
        result.elementSize = sizeof(typename T::value_type) + 4 * sizeof(void*);
        result.insert = [](void* map, std::string_view key) -> void* {
            auto [entry, added] = static_cast<T*>(map)->try_emplace(std::string(key));
            if (!added)
                entry->second = typename T::mapped_type();
            return std::addressof(entry->second);
        };
    } else if constexpr (HasForm<T>) {
        using Form = typename DecodedThrough<T>::Form;
        result.kind = Kind::record;
        result.makeForm = []() -> std::shared_ptr<void> { return std::make_shared<Form>(); };
        result.takeForm = [](void* form, void* record) {
            *static_cast<T*>(record) = DecodedThrough<T>::make(std::move(*static_cast<Form*>(form)));
        };
        fillRecord<Form>(result);
    } else {
        result.kind = Kind::record;
        fillRecord<T>(result);
    }
    return result;
}

} // namespace detail

/// The shape of a record, a list, a map or a plain value.
template <class T>
constexpr const Shape& shapeOf() {
    return detail::shape<T>;
}

} // namespace kinovane::json
