// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "storyboard/html.hpp"
#include "storyboard/page.hpp"
#include "storyboard/timeline_layout.hpp"

/// The sections of the page. Each is empty when there is nothing to tell.
namespace kinovane::tool {

Html headerSection(const PageContent& content);
Html damageSection(const PageContent& content);
Html timelineSection(const PageContent& content, const TimelineLayout& layout);
Html shotsSection(const PageContent& content);
Html castSection(const PageContent& content);
Html locationsSection(const PageContent& content);
Html findingsSection(const PageContent& content);
Html filesSection(const PageContent& content);

/// The rules of the style sheet that place everything on the timeline.
Html timelineRules(const Storyboard& storyboard, const TimelineLayout& layout);

/// A term and its description in a list of descriptions; nothing for an empty text.
Html fact(Markup term, std::string_view text);

/// A paragraph that stands for a picture or a clip that cannot be shown, and says why. `what` is such as "key
/// frame".
Html absence(const PageContent& content, std::optional<std::size_t> asset, Markup what);

/// The state of an asset's file as a coloured word after `what`; nothing when there is none to tell.
Html stateBadge(const AssetFile& file, Markup what = "");

} // namespace kinovane::tool
