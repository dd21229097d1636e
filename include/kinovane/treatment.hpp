// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// The record of treatment.json, the outline of a film in prose. The film tool writes it; the library only
/// reads it.
///
/// The record is a plain aggregate whose members have the names of their JSON keys. Every key is required,
/// and decodeJSON throws JSONDecodingError when one is missing or has a value of another type. Unknown keys
/// are ignored.
///
/// A record owns its data. Different objects may be used from different threads, and one object may be read
/// from several threads at once.
namespace kinovane {

/// The whole of treatment.json.
struct KINOVANE_EXPORT FilmTreatment {
    std::string title;              ///< Of the film.
    std::string logline;            ///< The film in one sentence.
    std::string synopsis;           ///< The story.
    std::string theme;              ///< What the story is about.
    std::vector<std::string> beats; ///< The story beats, in order.
    std::string visualLanguage;     ///< The visual style.
    std::string soundLanguage;      ///< The sound style.

    bool operator==(const FilmTreatment&) const = default;
};

template <>
inline constexpr JSONForm jsonForm<FilmTreatment> = JSONForm::readingAndWriting;

} // namespace kinovane
