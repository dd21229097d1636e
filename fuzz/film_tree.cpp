// SPDX-License-Identifier: Apache-2.0

#include "film_tree.hpp"

#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>

namespace kinovane::fuzz {

namespace fs = std::filesystem;

namespace {

struct Entry {
    const char* name; ///< Directories come before what lies in them.
    Thing thing;
    const char* target =
        ""; ///< "@" in front stands for the directory of the whole tree, "#" for an open "film".
};

constexpr Entry entries[] = {
    {"film", Thing::directory},
    {"film/a.png", Thing::soundFile},
    {"film/b.png", Thing::changedFile},
    {"film/..b", Thing::soundFile},
    {"film/...", Thing::directory},
    {"film/.../a.png", Thing::soundFile},
    {"film/pipe", Thing::fifo},
    {"film/frames", Thing::directory},
    {"film/frames/a.png", Thing::soundFile},
    {"film/frames/b.png", Thing::soundFile},
    {"film/frames/deep", Thing::directory},
    {"film/frames/deep/a.png", Thing::changedFile},
    {"film/frames/up", Thing::link, "../a.png"},
    {"film/frames/higher", Thing::link, "../../outside/a.png"},
    {"film/in", Thing::link, "a.png"},
    {"film/in-frames", Thing::link, "frames"},
    {"film/in-deep", Thing::link, "in-frames/./deep/"},
    {"film/in-slash", Thing::link, "a.png/"},
    {"film/in-pipe", Thing::link, "pipe"},
    {"film/here", Thing::link, "."},
    {"film/above", Thing::link, ".."},
    {"film/top", Thing::link, "/"},
    {"film/out", Thing::link, "../outside"},
    {"film/out-file", Thing::link, "../outside/a.png"},
    {"film/out-pipe", Thing::link, "../outside/pipe"},
    {"film/out-and-in", Thing::link, "../outside/back"},
    {"film/full", Thing::link, "@/film/a.png"},
    {"film/full-out", Thing::link, "@/outside/a.png"},
    {"film/full-given", Thing::link, "@/given/frames"},
    {"film/longer", Thing::link, "../film-other/a.png"},
    {"film/shorter", Thing::link, "../fil/a.png"},
    {"film/nowhere", Thing::link, "nothing"},
    {"film/nowhere-out", Thing::link, "../outside/nothing"},
    {"film/nowhere-back", Thing::link, "../outside/../film/nothing"},
    {"film/nowhere-climb", Thing::link, "nothing/../../outside/a.png"},
    {"film/nowhere-return", Thing::link, "nothing/../a.png"},
    {"film/through-file", Thing::link, "a.png/../b.png"},
    {"film/loop", Thing::link, "loop"},
    {"film/ping", Thing::link, "frames/../pong"},
    {"film/pong", Thing::link, "here/ping"},
    {"film/loop-out", Thing::link, "../outside/loop"},
    {"film/magic", Thing::link, "#"},
    {"outside", Thing::directory},
    {"outside/a.png", Thing::soundFile},
    {"outside/frames", Thing::directory},
    {"outside/frames/a.png", Thing::soundFile},
    {"outside/pipe", Thing::fifo},
    {"outside/back", Thing::link, "../film/a.png"},
    {"outside/home", Thing::link, "@/film"},
    {"outside/loop", Thing::link, "loop"},
    {"film-other", Thing::directory},
    {"film-other/a.png", Thing::soundFile},
    {"fil", Thing::directory},
    {"fil/a.png", Thing::soundFile},
    {"given", Thing::link, "film"},
};

void make(const fs::path& place, const Node& node) {
    switch (node.thing) {
    case Thing::directory:
        fs::create_directory(place);
        break;
    case Thing::soundFile:
    case Thing::changedFile:
        std::ofstream(place) << (node.thing == Thing::soundFile ? soundContent : changedContent);
        break;
    case Thing::fifo:
        if (::mkfifo(place.c_str(), 0600) != 0)
            throw std::runtime_error("no FIFO");
        break;
    case Thing::link:
        fs::create_symlink(node.target, place);
        break;
    }
}

} // namespace

FilmTree::FilmTree(const fs::path& area) {
    for (fs::path above = area; nodes_.emplace(above.native(), Node()).second;)
        above = above.parent_path();
    for (const Entry& entry : entries) {
        Node node{entry.thing, entry.target};
        if (node.target.starts_with('@'))
            node.target.replace(0, 1, area.native());
        if (node.target.starts_with('#')) {
            film_ = Descriptor(::open((area / "film").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            node.target.replace(0, 1, "/proc/self/fd/" + std::to_string(film_.get()));
        }
        make(area / entry.name, node);
        nodes_.emplace((area / entry.name).native(), std::move(node));
    }
}

const Node* FilmTree::at(const std::string& place) const {
    const auto node = nodes_.find(place);
    return node == nodes_.end() ? nullptr : &node->second;
}

} // namespace kinovane::fuzz
