// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kinovane/film_project.hpp>

#include "common/json/shape.hpp"
#include "common/json/table.hpp"

/// The JSON form of FilmBrief in film-project.json. A value is found under a flat key or in one of the nested
/// objects "target" and "creative", whose value takes precedence.
namespace kinovane {

struct BriefForm {
    using Text = std::optional<std::string>;
    using Texts = std::optional<std::vector<std::string>>;

    struct Target {
        Text audience;
        std::optional<double> durationSeconds;
        Text language;
        Text platform;
        Text rating;
        Text usage;
    };
    struct Creative {
        Text genre;
        Text tone;
        Texts mustHaves;
        Texts exclusions;
        Texts references;
    };

    // Declared first, so that an error in a nested object is reported before one in a flat key.
    std::optional<Target> target;
    std::optional<Creative> creative;
    Text audience;
    Text genre;
    Text tone;
    Text rating;
    Text language;
    Text platform;
    Text usage;
    std::optional<double> targetDurationSeconds;
    Texts mustHaves;
    Texts exclusions;
    Texts references;
    Texts openQuestions;
};

namespace json {

template <>
struct Table<BriefForm::Target> {
    using Target = BriefForm::Target;
    static constexpr std::tuple fields{
        field("audience", &Target::audience), field("durationSeconds", &Target::durationSeconds),
        field("language", &Target::language), field("platform", &Target::platform),
        field("rating", &Target::rating),     field("usage", &Target::usage),
    };
};

template <>
struct Table<BriefForm::Creative> {
    using Creative = BriefForm::Creative;
    static constexpr std::tuple fields{
        field("genre", &Creative::genre),           field("tone", &Creative::tone),
        field("mustHaves", &Creative::mustHaves),   field("exclusions", &Creative::exclusions),
        field("references", &Creative::references),
    };
};

template <>
struct Table<BriefForm> {
    static constexpr std::tuple fields{
        field("target", &BriefForm::target),
        field("creative", &BriefForm::creative),
        field("audience", &BriefForm::audience),
        field("genre", &BriefForm::genre),
        field("tone", &BriefForm::tone),
        field("rating", &BriefForm::rating),
        field("language", &BriefForm::language),
        field("platform", &BriefForm::platform),
        field("usage", &BriefForm::usage),
        field("targetDurationSeconds", &BriefForm::targetDurationSeconds),
        field("mustHaves", &BriefForm::mustHaves),
        field("exclusions", &BriefForm::exclusions),
        field("references", &BriefForm::references),
        field("openQuestions", &BriefForm::openQuestions),
    };
};

template <>
struct DecodedThrough<FilmBrief> {
    using Form = BriefForm;

    static FilmBrief make(Form&& form) {
        BriefForm::Target target = std::move(form.target).value_or(BriefForm::Target{});
        BriefForm::Creative creative = std::move(form.creative).value_or(BriefForm::Creative{});
        const auto either = [](auto& nested, auto& flat) { return std::move(nested ? nested : flat); };
        const auto list = [](std::optional<std::vector<std::string>>&& texts) {
            return std::move(texts).value_or(std::vector<std::string>{});
        };
        return {
            either(target.audience, form.audience),
            either(creative.genre, form.genre),
            either(creative.tone, form.tone),
            either(target.rating, form.rating),
            either(target.language, form.language),
            either(target.platform, form.platform),
            either(target.usage, form.usage),
            either(target.durationSeconds, form.targetDurationSeconds),
            list(either(creative.mustHaves, form.mustHaves)),
            list(either(creative.exclusions, form.exclusions)),
            list(either(creative.references, form.references)),
            list(std::move(form.openQuestions)),
        };
    }
};

} // namespace json
} // namespace kinovane
