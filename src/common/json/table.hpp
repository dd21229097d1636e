// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// The table of a record: the one place that names its JSON keys. Reading and writing are both driven by it.
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

/// Stands for a value of any member, to find out how many members an aggregate has.
struct AnyMember {
    template <class T>
        requires(!std::is_reference_v<T>)
    operator T() const; // NOLINT(google-explicit-constructor): it has to convert
};

template <std::size_t>
using AnyMemberAt = AnyMember;

template <class T, std::size_t... index>
consteval bool takes(std::index_sequence<index...> /*count*/) {
    return requires { T{AnyMemberAt<index>{}...}; };
}

template <class T, std::size_t count = 0>
consteval std::size_t countMembers() {
    if constexpr (takes<T>(std::make_index_sequence<count + 1>{}))
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

} // namespace kinovane::json
