// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "storyboard/asset_files.hpp"
#include "storyboard/html.hpp"
#include "storyboard/storyboard.hpp"

namespace kinovane::tool {

/// How the page refers to the files of a film. Pictures and clips that the page shows are embedded until they
/// fill the limit, key frames first; all others are linked. A file that is not in the film's folder is
/// neither.
class PageMedia {
  public:
    struct Counts {
        std::size_t embedded = 0;
        std::size_t linked = 0; ///< Pictures and clips that the page shows and does not hold.
        std::uint64_t embeddedBytes = 0;
    };

    /// `root` is the film's folder, `page` the path of the page; `files` belong to the assets.
    PageMedia(const Storyboard& storyboard, const std::vector<AssetFile>& files,
              const std::filesystem::path& root, const std::filesystem::path& page, std::uint64_t embedLimit);

    /// No file is shown: the film was not found.
    explicit PageMedia(const Storyboard& storyboard);

    /// The source of a picture or a clip; null when there is none that a browser can show.
    const Url* picture(std::optional<std::size_t> asset) const;
    const Url* clip(std::optional<std::size_t> asset) const;

    /// A link to the file itself; null when there is none, or when it could run a script.
    const Url* link(std::size_t asset) const;

    const Counts& counts() const noexcept { return counts_; }

  private:
    enum class Kind { other, picture, clip };

    struct Entry {
        Kind kind = Kind::other;
        std::filesystem::path file;
        std::optional<Url> link;
        std::optional<Url> embedded;
    };

    struct FileType;
    static const FileType* typeOf(const std::filesystem::path& file);

    void embed(std::optional<std::size_t> asset, Kind kind, const std::filesystem::path& root,
               std::uint64_t limit);
    const Url* source(std::optional<std::size_t> asset, Kind kind) const;

    std::vector<Entry> entries_; ///< One for each asset.
    std::vector<bool> isShown_;
    Counts counts_;
};

} // namespace kinovane::tool
