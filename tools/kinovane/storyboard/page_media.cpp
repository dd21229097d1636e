// SPDX-License-Identifier: Apache-2.0

#include "storyboard/page_media.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <system_error>

#include "storyboard/contained_file.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

/// A type of file that a browser shows without running anything in it. The name decides, because it is also
/// what a browser goes by.
struct PageMedia::FileType {
    std::string_view extension;
    Kind kind;
    Markup mediaType;
};

const PageMedia::FileType* PageMedia::typeOf(const fs::path& file) {
    using enum Kind;
    static constexpr std::array<FileType, 22> types{{
        {".png", picture, "image/png"},   {".jpg", picture, "image/jpeg"},  {".jpeg", picture, "image/jpeg"},
        {".webp", picture, "image/webp"}, {".avif", picture, "image/avif"}, {".gif", picture, "image/gif"},
        {".mp4", clip, "video/mp4"},      {".m4v", clip, "video/mp4"},      {".mov", clip, "video/quicktime"},
        {".webm", clip, "video/webm"},    {".wav", other, "audio/wav"},     {".mp3", other, "audio/mpeg"},
        {".m4a", other, "audio/mp4"},     {".ogg", other, "audio/ogg"},     {".opus", other, "audio/ogg"},
        {".flac", other, "audio/flac"},   {".srt", other, "text/plain"},    {".vtt", other, "text/vtt"},
        {".txt", other, "text/plain"},    {".json", other, "text/plain"},   {".jsonl", other, "text/plain"},
        {".md", other, "text/plain"},
    }};
    const std::string extension = file.extension().string();
    const auto* found = std::ranges::find(types, extension, &FileType::extension);
    return found == types.end() ? nullptr : found;
}

PageMedia::PageMedia(const Storyboard& storyboard)
    : entries_(storyboard.assets.size()), isShown_(storyboard.assets.size()) {}

PageMedia::PageMedia(const Storyboard& storyboard, const std::vector<AssetFile>& files, const fs::path& root,
                     const fs::path& page, std::uint64_t embedLimit)
    : PageMedia(storyboard) {
    std::error_code error;
    const fs::path folder = fs::canonical(root, error);
    if (error)
        return;
    const fs::path pageFolder = fs::weakly_canonical(fs::absolute(page)).parent_path();
    for (std::size_t index = 0; index < entries_.size(); ++index) {
        Entry& entry = entries_[index];
        if (!files[index].exists)
            continue;
        const std::optional<fs::path> file = pathInside(folder, storyboard.assets[index].path);
        if (!file)
            continue;
        const FileType* type = typeOf(*file);
        if (type == nullptr)
            continue;
        entry.file = *file;
        entry.kind = type->kind;
        entry.link = Url::relative(file->lexically_relative(pageFolder).string());
    }
    const auto pictures = [&](std::optional<std::size_t> asset) {
        embed(asset, Kind::picture, folder, embedLimit);
    };
    pictures(lastAsset(storyboard, "poster"));
    for (const StoryboardShot& shot : storyboard.shots)
        pictures(shot.keyframe);
    for (const FilmCastMember& member : storyboard.cast)
        pictures(lastAsset(storyboard, "cast-master", member.id));
    for (const FilmLocation& location : storyboard.locations)
        pictures(lastAsset(storyboard, "location-master", location.id));
    for (const StoryboardShot& shot : storyboard.shots)
        embed(shot.clip, Kind::clip, folder, embedLimit);
}

void PageMedia::embed(std::optional<std::size_t> asset, Kind kind, const fs::path& root,
                      std::uint64_t limit) {
    if (!asset || isShown_[*asset] || entries_[*asset].kind != kind)
        return;
    isShown_[*asset] = true;
    Entry& entry = entries_[*asset];
    const std::uint64_t left = limit - counts_.embeddedBytes;
    const std::optional<std::string> content =
        left == 0 ? std::nullopt : contentInside(root, entry.file, left);
    if (!content) {
        ++counts_.linked;
        return;
    }
    entry.embedded = Url::data(typeOf(entry.file)->mediaType, *content);
    ++counts_.embedded;
    counts_.embeddedBytes += content->size();
}

const Url* PageMedia::source(std::optional<std::size_t> asset, Kind kind) const {
    if (!asset || entries_[*asset].kind != kind)
        return nullptr;
    const Entry& entry = entries_[*asset];
    return entry.embedded ? &*entry.embedded : link(*asset);
}

const Url* PageMedia::picture(std::optional<std::size_t> asset) const { return source(asset, Kind::picture); }

const Url* PageMedia::clip(std::optional<std::size_t> asset) const { return source(asset, Kind::clip); }

const Url* PageMedia::link(std::size_t asset) const {
    const std::optional<Url>& link = entries_[asset].link;
    return link ? &*link : nullptr;
}

} // namespace kinovane::tool
