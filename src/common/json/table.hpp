// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// The table of a record names its JSON keys. It drives both reading and writing.
namespace kinovane::json {

/// One row of a table: the key of one member.
template <class Record, class Member>
struct Field {
    using RecordType = Record;
    using MemberType = Member;
    std::string_view key;
    Member Record::* member;
};

template <class Record, class Member>
constexpr Field<Record, Member> field(std::string_view key, Member Record::* member) {
    return {key, member};
}

/// Specialised for each record, with `static constexpr auto fields = std::tuple(field(…), …);` in declared
/// order.
template <class Record>
struct Table;

template <class T>
concept Record = requires { Table<T>::fields; };

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool isList = false;
template <class T>
inline constexpr bool isList<std::vector<T>> = true;
template <class T>
inline constexpr bool isMap = false;
template <class T>
inline constexpr bool isMap<std::map<std::string, T>> = true;

namespace detail {

/// Converts to the type of any member, to count the members of an aggregate.
struct AnyMember {
    template <class T>
        requires(!std::is_reference_v<T>)
    operator T() const; // NOLINT(google-explicit-constructor): converts implicitly
};

template <std::size_t>
using AnyMemberAt = AnyMember;

template <class T, std::size_t... index>
consteval bool isInitialisedBy(std::index_sequence<index...> /*count*/) {
    return requires { T{AnyMemberAt<index>{}...}; };
}

template <class T, std::size_t count = 0>
consteval std::size_t countMembers() {
    if constexpr (isInitialisedBy<T>(std::make_index_sequence<count + 1>{}))
        return countMembers<T, count + 1>();
    else
        return count;
}

} // namespace detail

/// How many members a record has.
template <class T>
inline constexpr std::size_t memberCount = detail::countMembers<T>();

/// How many rows its table has.
template <Record T>
inline constexpr std::size_t fieldCount = std::tuple_size_v<decltype(Table<T>::fields)>;

/// The keys of its table, in declared order.
template <Record T>
inline constexpr std::array<std::string_view, fieldCount<T>> keys =
    std::apply([](const auto&... row) { return std::array<std::string_view, fieldCount<T>>{row.key...}; },
               Table<T>::fields);

/// Whether no key occurs twice, and each is printable ASCII that needs no escaping in a JSON string.
constexpr bool hasPlainDistinctKeys(std::span<const std::string_view> keys) {
    for (std::size_t index = 0; index < keys.size(); ++index) {
        for (const char character : keys[index])
            if (character < ' ' || character > '~' || character == '"' || character == '\\')
                return false;
        for (std::size_t other = 0; other < index; ++other)
            if (keys[other] == keys[index])
                return false;
    }
    return true;
}

/// Does not compile when the record's table is wrong.
template <Record T>
consteval void checkTable() {
    static_assert(fieldCount<T> == memberCount<T>, "every member needs a row in the record's table");
    static_assert(hasPlainDistinctKeys(keys<T>), "the keys of a table are distinct and need no escaping");
}

} // namespace kinovane::json
