// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/treatment.hpp>

#include "common/json/table.hpp"

/// The JSON keys of treatment.json.
namespace kinovane::json {

template <>
struct Table<FilmTreatment> {
    static constexpr std::tuple fields{
        field("title", &FilmTreatment::title),
        field("logline", &FilmTreatment::logline),
        field("synopsis", &FilmTreatment::synopsis),
        field("theme", &FilmTreatment::theme),
        field("beats", &FilmTreatment::beats),
        field("visualLanguage", &FilmTreatment::visualLanguage),
        field("soundLanguage", &FilmTreatment::soundLanguage),
    };
};

} // namespace kinovane::json
