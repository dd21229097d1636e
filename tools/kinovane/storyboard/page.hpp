// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "storyboard/asset_files.hpp"
#include "storyboard/page_media.hpp"
#include "storyboard/storyboard.hpp"

namespace kinovane::tool {

struct PageContent {
    const Storyboard& storyboard;
    const std::vector<AssetFile>& files; ///< One for each asset.
    const PageMedia& media;
    bool isVerified = false;
    bool hasFilm = true; ///< Whether the film's folder was found.
};

/// Whether the file begins as a page of storyboardPage, of this version or another one.
bool isStoryboardPage(const std::filesystem::path& file);

/// The whole page: one HTML document that loads nothing but the linked files of the film. Its security policy
/// permits only its own script and style sheet.
std::string storyboardPage(const PageContent& content);

} // namespace kinovane::tool
