// SPDX-License-Identifier: Apache-2.0

#include "path_model.hpp"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <vector>

namespace kinovane::fuzz {

namespace {

std::vector<std::string_view> namesOf(std::string_view path) {
    std::vector<std::string_view> names;
    std::size_t start = 0;
    for (std::size_t end = 0; end <= path.size(); ++end) {
        if (end < path.size() && path[end] != '/')
            continue;
        if (end > start)
            names.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

/// Resolves paths on the description of the tree. After a component that does not exist, resolution continues
/// with the text only.
class ModelResolution {
  public:
    explicit ModelResolution(const FilmTree& tree) : tree_(tree) {}

    /// Resolves a path relative to the location reached so far; a path that ends in a slash names a
    /// directory.
    void resolve(std::string_view path) {
        if (path.starts_with('/'))
            names_.clear();
        for (const std::string_view name : namesOf(path))
            resolveComponent(name);
        if (path.ends_with('/'))
            resolveComponent(".");
    }

    /// The file or directory at the location; null when it does not exist.
    const Node* node() const { return missing_ ? nullptr : tree_.at(location()); }

    /// A separate resolution that starts at this location; it counts its links from 0.
    ModelResolution from(std::string_view path) const {
        ModelResolution result = *this;
        result.links_ = 0;
        result.resolve(path);
        return result;
    }

    bool isBelow(const ModelResolution& other) const {
        return names_.size() > other.names_.size() &&
               std::equal(other.names_.begin(), other.names_.end(), names_.begin());
    }

  private:
    std::string location() const {
        std::string location;
        for (const std::string& name : names_)
            location += "/" + name;
        return location.empty() ? "/" : location;
    }

    void resolveComponent(std::string_view name) {
        const Node* parent = node();
        if (parent == nullptr || parent->type != FileType::directory)
            missing_ = true; // Only a directory has entries, "." and ".." included.
        if (name == ".")
            return;
        if (name == "..") {
            if (!names_.empty())
                names_.pop_back();
            return;
        }
        names_.emplace_back(name);
        const Node* child = node();
        if (child == nullptr) {
            missing_ = true;
        } else if (child->type == FileType::link) {
            constexpr int maximumLinks = 40;
            if (links_ == maximumLinks) {
                missing_ = true;
                return;
            }
            ++links_;
            names_.pop_back();
            resolve(child->target);
        }
    }

    const FilmTree& tree_;
    std::vector<std::string> names_;
    bool missing_ = false;
    int links_ = 0;
};

} // namespace

Verdict verdictOf(const FilmTree& tree, const std::string& root, std::string_view path) {
    const std::vector<std::string_view> names = namesOf(path);
    if (path.starts_with('/') || path.find('\0') != std::string_view::npos ||
        std::find(names.begin(), names.end(), "..") != names.end())
        return Verdict::unsafe;
    const ModelResolution project = ModelResolution(tree).from(root);
    const ModelResolution artifact = project.from(path);
    if (!artifact.isBelow(project))
        return Verdict::unsafe;
    // The limit of the system includes the final NUL byte.
    const std::size_t slash = root.ends_with('/') ? 0 : 1;
    const bool isTooLong = root.size() + slash + path.size() + 1 > PATH_MAX;
    const Node* node = artifact.node();
    if (node == nullptr || isTooLong)
        return Verdict::missing;
    switch (node->type) {
    case FileType::soundFile:
        return Verdict::sound;
    case FileType::changedFile:
        return Verdict::changed;
    case FileType::directory:
        return Verdict::directory;
    case FileType::fifo:
    case FileType::link:
        break;
    }
    return Verdict::noRegularFile;
}

} // namespace kinovane::fuzz
