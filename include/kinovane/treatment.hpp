// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// treatment.json: the film in prose, written by the film tool.
///
/// Every record is a plain aggregate. A member has the name of its JSON key; optional members are absent when
/// the key is missing or null, and all other keys are required. Time stamps are opaque text, as the film tool
/// wrote them. Records are independent values: copy, move and share them between threads as you would a
/// std::string.
namespace kinovane {

/// The whole of treatment.json.
struct KINOVANE_EXPORT FilmTreatment {
    std::string title;
    std::string logline;
    std::string synopsis;
    std::string theme;
    std::vector<std::string> beats;
    std::string visualLanguage;
    std::string soundLanguage;

    bool operator==(const FilmTreatment&) const = default;
};

template <>
inline constexpr JSONForm jsonForm<FilmTreatment> = JSONForm::readingAndWriting;

} // namespace kinovane
