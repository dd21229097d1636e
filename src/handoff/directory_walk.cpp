#include "handoff/directory_walk.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane {

namespace {

// Directories are only passed through: the right to search them must do, and the right to list them is not
// asked for.
#if defined(O_PATH)
constexpr int passingFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#elif defined(O_SEARCH)
constexpr int passingFlags = O_SEARCH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#else
constexpr int passingFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#endif

constexpr int mostLinks = 40; // As the operating system does.

std::error_code lastError() { return {errno, std::generic_category()}; }

/// Puts the pieces of a path onto a stack, the first one on top. A path that ends in "/" ends in a piece ".",
/// because what it names has to be a directory.
void push(std::vector<std::string>& pending, std::string_view path) {
    if (path.ends_with('/'))
        pending.emplace_back(".");
    while (!path.empty()) {
        const std::size_t slash = path.rfind('/');
        const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
        if (start < path.size())
            pending.emplace_back(path.substr(start));
        path = path.substr(0, start == 0 ? 0 : start - 1);
    }
}

std::string readLink(int directory, const char* name) {
    std::array<char, PATH_MAX> target{};
    const auto length = ::readlinkat(directory, name, target.data(), target.size());
    return length < 0 ? std::string() : std::string(target.data(), static_cast<std::size_t>(length));
}

} // namespace

DirectoryWalk::DirectoryWalk() {
    Descriptor top(retryInterrupted([] { return ::open("/", passingFlags); }));
    if (!top)
        throw std::filesystem::filesystem_error("cannot open", "/", lastError());
    steps_.push_back({{}, std::make_shared<const Descriptor>(std::move(top))});
}

std::error_code DirectoryWalk::follow(std::string_view path) {
    std::vector<std::string> pending;
    int links = 0;
    if (path.starts_with('/'))
        steps_.resize(1);
    push(pending, path);
    while (!pending.empty()) {
        const std::string name = std::move(pending.back());
        pending.pop_back();
        if (name == "." || name == "..") {
            if (arrived() && !steps_.back().directory)
                missing_ = std::errc::not_a_directory;
            if (name == ".." && steps_.size() > 1)
                steps_.pop_back();
        } else if (!arrived()) {
            steps_.push_back({name, nullptr});
        } else if (const std::error_code error = enter(name, pending, links)) {
            return error;
        }
    }
    return {};
}

std::error_code DirectoryWalk::enter(std::string_view name, std::vector<std::string>& pending, int& links) {
    std::string piece(name);
    const int directory = descriptor();
    if (directory < 0) {
        missing_ = std::errc::not_a_directory;
        steps_.push_back({std::move(piece), nullptr});
        return {};
    }
    struct stat status{};
    if (::fstatat(directory, piece.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT && errno != ENAMETOOLONG)
            return lastError();
        missing_ = static_cast<std::errc>(errno);
        steps_.push_back({std::move(piece), nullptr});
        return {};
    }
    if (S_ISLNK(status.st_mode)) {
        const std::string target = readLink(directory, piece.c_str());
        if (target.empty())
            return lastError();
        if (++links > mostLinks) {
            // A loop leads to no file. It ends here, by name, where the way stands.
            missing_ = std::errc::too_many_symbolic_link_levels;
            steps_.push_back({std::move(piece), nullptr});
            return {};
        }
        if (target.starts_with('/'))
            steps_.resize(1);
        push(pending, target);
        return {};
    }
    if (!S_ISDIR(status.st_mode)) {
        steps_.push_back({std::move(piece), nullptr});
        return {};
    }
    auto next = std::make_shared<const Descriptor>(
        retryInterrupted([&] { return ::openat(directory, piece.c_str(), passingFlags); }));
    if (!*next)
        return lastError();
    steps_.push_back({std::move(piece), std::move(next)});
    return {};
}

bool DirectoryWalk::isInside(const DirectoryWalk& other) const {
    return steps_.size() > other.steps_.size() && beginsAs(other);
}

bool DirectoryWalk::isAt(const DirectoryWalk& other) const {
    return steps_.size() == other.steps_.size() && beginsAs(other);
}

bool DirectoryWalk::beginsAs(const DirectoryWalk& other) const {
    return std::equal(other.steps_.begin(), other.steps_.end(), steps_.begin(),
                      [](const Step& left, const Step& right) { return left.name == right.name; });
}

Descriptor DirectoryWalk::open(int flags) const {
    if (steps_.size() < 2 || !steps_[steps_.size() - 2].directory) {
        errno = EISDIR;
        return {};
    }
    const int parent = steps_[steps_.size() - 2].directory->get();
    return Descriptor(
        retryInterrupted([&] { return ::openat(parent, steps_.back().name.c_str(), flags | O_NOFOLLOW); }));
}

int DirectoryWalk::descriptor() const noexcept {
    const auto& directory = steps_.back().directory;
    return arrived() && directory ? directory->get() : -1;
}

} // namespace kinovane
