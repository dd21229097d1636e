// SPDX-License-Identifier: Apache-2.0

#include "film/film_tree.hpp"

#include <algorithm>
#include <utility>

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

void list(const fs::path& root, const fs::path& folder, std::vector<TreeEntry>& tree,
          std::vector<TreeEntry>& folders) {
    std::error_code error;
    fs::directory_iterator entry(root / folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        TreeEntry found{folder / entry->path().filename(), {}, {}};
        if (::lstat((root / found.path).c_str(), &found.status) != 0)
            continue; // It was removed meanwhile.
        (found.isFolder() ? folders : tree).push_back(std::move(found));
    }
    if (error)
        tree.push_back({folder, {}, error});
}

} // namespace

std::vector<TreeEntry> treeBelow(const fs::path& folder) {
    std::vector<TreeEntry> tree;
    std::vector<TreeEntry> folders;
    list(folder, "", tree, folders);
    while (!folders.empty()) {
        const TreeEntry next = std::move(folders.back());
        folders.pop_back();
        tree.push_back(next);
        list(folder, next.path, tree, folders);
    }
    std::ranges::sort(tree, {}, &TreeEntry::path);
    return tree;
}

bool isInsideLexically(const fs::path& path, const fs::path& folder) {
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}

fs::path linkTextInside(const fs::path& folder, const fs::path& link) {
    std::error_code error;
    const fs::path root = fs::canonical(folder, error);
    fs::path text = fs::read_symlink(root / link, error);
    if (error)
        return {};
    const fs::path parent = fs::weakly_canonical((root / link).parent_path(), error);
    const fs::path target = error ? fs::path() : fs::weakly_canonical(parent / text, error);
    if (error || !isInsideLexically(target, root))
        return {};
    // An absolute link, or one through the folder's own name, would not lead into the copy.
    if (text.is_absolute() || !isInsideLexically((root / link).parent_path() / text, root))
        return target.lexically_relative(parent);
    return text;
}

bool isInside(const fs::path& path, const fs::path& folder) {
    return isInsideLexically(fs::weakly_canonical(fs::absolute(path)),
                             fs::weakly_canonical(fs::absolute(folder)));
}

} // namespace kinovane::tool
