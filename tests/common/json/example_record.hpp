// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/json.hpp>

#include "common/json/decoder.hpp"

namespace kinovane::test {

/// A member of a list.
struct Prop {
    std::string name;
    std::int64_t count = 0;

    bool operator==(const Prop&) const = default;
};

/// A record with a member of every sort.
struct Scene {
    std::string title;
    std::int64_t take = 0;
    double length = 0;
    bool night = false;
    std::vector<Prop> props;
    std::map<std::string, std::int64_t> extras;
    std::optional<Prop> star;
    std::optional<std::string> note;

    bool operator==(const Scene&) const = default;
};

/// A scene in which every member has a value.
inline Scene fullScene() {
    return {"Quay", 2, 1.5, true, {{"lamp", 7}}, {{"sailors", 3}}, Prop{"ferry", 1}, "fog"};
}

inline constexpr std::string_view fullSceneText =
    R"({"title":"Quay","take":2,"length":1.5,"night":true,"props":[{"name":"lamp","count":7}],)"
    R"("extras":{"sailors":3},"star":{"name":"ferry","count":1},"note":"fog"})";

/// What a failed reading says of a document.
struct Refusal {
    std::string path;
    std::string message;

    bool operator==(const Refusal&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
    return stream << '"' << refusal.message << "\" at \"" << refusal.path << '"';
}

/// The document as it is read when storing its values directly would take too much memory.
template <class T>
T checkedAndDecoded(std::string_view document) {
    T value{};
    json::checkAndDecodeInto(&value, json::shapeOf<T>(), document);
    return value;
}

/// What is said of a document, which must be the same in both forms of reading.
template <class T>
std::optional<Refusal> refusalOf(std::string_view document) {
    const auto refusal = [&](T (*read)(std::string_view)) -> std::optional<Refusal> {
        try {
            static_cast<void>(read(document));
            return std::nullopt;
        } catch (const JSONDecodingError& error) {
            return Refusal{error.path(), error.what()};
        }
    };
    const std::optional<Refusal> direct = refusal(json::decode<T>);
    EXPECT_EQ(refusal(checkedAndDecoded<T>), direct);
    return direct;
}

} // namespace kinovane::test

namespace kinovane::json {

template <>
struct Table<test::Prop> {
    static constexpr std::tuple fields{
        field("name", &test::Prop::name),
        field("count", &test::Prop::count),
    };
};

template <>
struct Table<test::Scene> {
    static constexpr std::tuple fields{
        field("title", &test::Scene::title),   field("take", &test::Scene::take),
        field("length", &test::Scene::length), field("night", &test::Scene::night),
        field("props", &test::Scene::props),   field("extras", &test::Scene::extras),
        field("star", &test::Scene::star),     field("note", &test::Scene::note),
    };
};

} // namespace kinovane::json
