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
    const char* name; ///< Directories come before their entries.
    FileType type;
    const char* target =
        ""; ///< A leading "@" is the directory of the whole tree, "#" an open descriptor of "film".
};

constexpr Entry entries[] = {
    {"film", FileType::directory},
    {"film/a.png", FileType::soundFile},
    {"film/b.png", FileType::changedFile},
    {"film/..b", FileType::soundFile},
    {"film/...", FileType::directory},
    {"film/.../a.png", FileType::soundFile},
    {"film/pipe", FileType::fifo},
    {"film/frames", FileType::directory},
    {"film/frames/a.png", FileType::soundFile},
    {"film/frames/b.png", FileType::soundFile},
    {"film/frames/deep", FileType::directory},
    {"film/frames/deep/a.png", FileType::changedFile},
    {"film/frames/up", FileType::link, "../a.png"},
    {"film/frames/higher", FileType::link, "../../outside/a.png"},
    {"film/in", FileType::link, "a.png"},
    {"film/in-frames", FileType::link, "frames"},
    {"film/in-deep", FileType::link, "in-frames/./deep/"},
    {"film/in-slash", FileType::link, "a.png/"},
    {"film/in-pipe", FileType::link, "pipe"},
    {"film/here", FileType::link, "."},
    {"film/above", FileType::link, ".."},
    {"film/top", FileType::link, "/"},
    {"film/out", FileType::link, "../outside"},
    {"film/out-file", FileType::link, "../outside/a.png"},
    {"film/out-pipe", FileType::link, "../outside/pipe"},
    {"film/out-and-in", FileType::link, "../outside/back"},
    {"film/full", FileType::link, "@/film/a.png"},
    {"film/full-out", FileType::link, "@/outside/a.png"},
    {"film/full-given", FileType::link, "@/given/frames"},
    {"film/longer", FileType::link, "../film-other/a.png"},
    {"film/shorter", FileType::link, "../fil/a.png"},
    {"film/nowhere", FileType::link, "nothing"},
    {"film/nowhere-out", FileType::link, "../outside/nothing"},
    {"film/nowhere-back", FileType::link, "../outside/../film/nothing"},
    {"film/nowhere-climb", FileType::link, "nothing/../../outside/a.png"},
    {"film/nowhere-return", FileType::link, "nothing/../a.png"},
    {"film/through-file", FileType::link, "a.png/../b.png"},
    {"film/loop", FileType::link, "loop"},
    {"film/ping", FileType::link, "frames/../pong"},
    {"film/pong", FileType::link, "here/ping"},
    {"film/loop-out", FileType::link, "../outside/loop"},
    {"film/magic", FileType::link, "#"},
    {"outside", FileType::directory},
    {"outside/a.png", FileType::soundFile},
    {"outside/frames", FileType::directory},
    {"outside/frames/a.png", FileType::soundFile},
    {"outside/pipe", FileType::fifo},
    {"outside/back", FileType::link, "../film/a.png"},
    {"outside/home", FileType::link, "@/film"},
    {"outside/loop", FileType::link, "loop"},
    {"film-other", FileType::directory},
    {"film-other/a.png", FileType::soundFile},
    {"fil", FileType::directory},
    {"fil/a.png", FileType::soundFile},
    {"given", FileType::link, "film"},
};

void make(const fs::path& path, const Node& node) {
    switch (node.type) {
    case FileType::directory:
        fs::create_directory(path);
        break;
    case FileType::soundFile:
    case FileType::changedFile:
        std::ofstream(path) << (node.type == FileType::soundFile ? soundContent : changedContent);
        break;
    case FileType::fifo:
        if (::mkfifo(path.c_str(), 0600) != 0)
            throw std::runtime_error("cannot make a FIFO");
        break;
    case FileType::link:
        fs::create_symlink(node.target, path);
        break;
    }
}

} // namespace

FilmTree::FilmTree(const fs::path& area) {
    for (fs::path above = area; nodes_.emplace(above.native(), Node()).second;)
        above = above.parent_path();
    for (const Entry& entry : entries) {
        Node node{entry.type, entry.target};
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

const Node* FilmTree::at(const std::string& path) const {
    const auto node = nodes_.find(path);
    return node == nodes_.end() ? nullptr : &node->second;
}

} // namespace kinovane::fuzz
