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

/// Where a path leads. After a place at which nothing is, it goes on by name alone.
class Way {
  public:
    explicit Way(const FilmTree& tree) : tree_(tree) {}

    /// Follows a path to its end; a path that ends in a slash names a directory.
    void follow(std::string_view path) {
        if (path.starts_with('/'))
            names_.clear();
        for (const std::string_view name : namesOf(path))
            step(name);
        if (path.ends_with('/'))
            step(".");
    }

    /// A file or a directory; null when nothing is here.
    const Node* node() const { return lost_ ? nullptr : tree_.at(place()); }

    /// A way of its own that goes on from here: links are counted anew.
    Way from(std::string_view path) const {
        Way way = *this;
        way.links_ = 0;
        way.follow(path);
        return way;
    }

    bool isBelow(const Way& other) const {
        return names_.size() > other.names_.size() &&
               std::equal(other.names_.begin(), other.names_.end(), names_.begin());
    }

  private:
    std::string place() const {
        std::string place;
        for (const std::string& name : names_)
            place += "/" + name;
        return place.empty() ? "/" : place;
    }

    void step(std::string_view name) {
        const Node* here = node();
        if (here == nullptr || here->thing != Thing::directory)
            lost_ = true; // Nothing lies in what is no directory, not even "." and "..".
        if (name == ".")
            return;
        if (name == "..") {
            if (!names_.empty())
                names_.pop_back();
            return;
        }
        names_.emplace_back(name);
        const Node* there = node();
        if (there == nullptr) {
            lost_ = true;
        } else if (there->thing == Thing::link) {
            constexpr int mostLinks = 40;
            if (links_ == mostLinks) {
                lost_ = true;
                return;
            }
            ++links_;
            names_.pop_back();
            follow(there->target);
        }
    }

    const FilmTree& tree_;
    std::vector<std::string> names_;
    bool lost_ = false;
    int links_ = 0;
};

} // namespace

Verdict verdictOf(const FilmTree& tree, const std::string& root, std::string_view path) {
    const std::vector<std::string_view> names = namesOf(path);
    if (path.starts_with('/') || path.find('\0') != std::string_view::npos ||
        std::find(names.begin(), names.end(), "..") != names.end())
        return Verdict::unsafe;
    const Way project = Way(tree).from(root);
    const Way way = project.from(path);
    if (!way.isBelow(project))
        return Verdict::unsafe;
    // What the system is given ends in a NUL byte.
    const std::size_t slash = root.ends_with('/') ? 0 : 1;
    const bool isTooLong = root.size() + slash + path.size() + 1 > PATH_MAX;
    const Node* node = way.node();
    if (node == nullptr || isTooLong)
        return Verdict::missing;
    switch (node->thing) {
    case Thing::soundFile:
        return Verdict::sound;
    case Thing::changedFile:
        return Verdict::changed;
    case Thing::directory:
        return Verdict::directory;
    case Thing::fifo:
    case Thing::link:
        break;
    }
    return Verdict::noRegularFile;
}

} // namespace kinovane::fuzz
