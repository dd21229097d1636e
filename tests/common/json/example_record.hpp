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

/// An element of a list.
struct Prop {
    std::string name;
    std::int64_t count = 0;

    bool operator==(const Prop&) const = default;
};

/// A record with a member of every type.
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

/// The texts of a JSONDecodingError or JSONEncodingError.
struct ErrorTexts {
    std::string path;
    std::string message;

    bool operator==(const ErrorTexts&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const ErrorTexts& texts) {
    return stream << '"' << texts.message << "\" at \"" << texts.path << '"';
}

/// Decodes a document in two passes, as if its values took too much memory.
template <class T>
T decodeInTwoPasses(std::string_view document) {
    T value{};
    json::checkAndDecodeInto(&value, json::shapeOf<T>(), document);
    return value;
}

/// The error of decoding a document, which must be the same in one pass and in two.
template <class T>
std::optional<ErrorTexts> decodingErrorOf(std::string_view document) {
    const auto errorOf = [&](T (*decode)(std::string_view)) -> std::optional<ErrorTexts> {
        try {
            static_cast<void>(decode(document));
            return std::nullopt;
        } catch (const JSONDecodingError& error) {
            return ErrorTexts{error.path(), error.what()};
        }
    };
    const std::optional<ErrorTexts> inOnePass = errorOf(json::decode<T>);
    EXPECT_EQ(errorOf(decodeInTwoPasses<T>), inOnePass);
    return inOnePass;
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
