// SPDX-License-Identifier: Apache-2.0

// Paths through many directories, resolved with few descriptors.

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "common/files/descriptor.hpp"
#include "support/forked_process.hpp"
#include "support/limits.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int levels = 1500;
constexpr int outsideLevels = 400;
constexpr rlim_t fewDescriptors = 256;
constexpr std::string_view content = "content";

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int time = 0; time < times; ++time)
        result += text;
    return result;
}

/// Nested directories "d". They are created and removed relative to their parent, because looking up long
/// paths is slow, and std::filesystem::remove_all keeps a descriptor for each level.
class DeepDirectories {
  public:
    DeepDirectories(const fs::path& top, int depth) : top_(top.string()), depth_(depth) {
        fs::create_directories(top);
        Descriptor directory(::open(top_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        for (int level = 1; level <= depth_; ++level) {
            if (::mkdirat(directory.get(), "d", 0755) != 0)
                throw std::system_error(errno, std::generic_category(), "mkdirat");
            directory = Descriptor(::openat(directory.get(), "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        }
    }
    DeepDirectories(const DeepDirectories&) = delete;
    DeepDirectories& operator=(const DeepDirectories&) = delete;
    ~DeepDirectories() {
        for (const std::string& entry : entries_)
            ::unlink(entry.c_str());
        Descriptor directory(::open(at(depth_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        for (int level = depth_; level > 0; --level) {
            directory = Descriptor(::openat(directory.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            ::unlinkat(directory.get(), "d", AT_REMOVEDIR);
        }
    }

    /// The directory at this depth.
    std::string at(int level) const { return top_ + repeated("/d", level); }

    void file(int level, const std::string& name) { std::ofstream(newEntry(level, name)) << content; }
    void link(int level, const std::string& name, const fs::path& target) {
        fs::create_symlink(target, newEntry(level, name));
    }

  private:
    const std::string& newEntry(int level, const std::string& name) {
        return entries_.emplace_back(at(level) + "/" + name);
    }

    std::string top_;
    int depth_;
    std::vector<std::string> entries_;
};

/// The result of an audit, with few descriptors, of one artifact that has the digest of `content`.
std::string audited(const fs::path& root, const std::string& path) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = root;
    snapshot.project.artifacts = {{7, "image/png", "c", "poster", path,
                                   VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content))), "s"}};
    return inForkedProcess([&]() -> std::string {
        limitTo(RLIMIT_NOFILE, fewDescriptors);
        const ArtifactOutcome outcome = VistrelHandoffBuilder::audit(snapshot).at(0);
        if (outcome.failure)
            return outcome.failure.message();
        if (outcome.sound())
            return "sound";
        return outcome.refusal == VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{path})
                   ? "unsafe"
                   : outcome.description();
    });
}

struct DeepRow {
    const char* sentence;
    fs::path root;
    std::string path; ///< Of the artifact.
    const char* expected;
};

TEST(DeepPath, NeedsFewDescriptors) {
    const TemporaryDirectory area;
    area.write("film/a.png", content);
    area.write("outside/a.png", content);
    fs::create_symlink(area / "film", area / "film/absolute");
    fs::create_symlink("../outside", area / "film/out");
    DeepDirectories inside(area / "film", levels);
    inside.link(680, "up", repeated("../", 680) + "a.png");
    inside.link(700, "up", repeated("../", 20) + "up");
    inside.link(1300, "up", repeated("../", 1300) + "a.png");
    inside.link(1300, "zigzag", repeated("../", 1000) + repeated("d/", 400) + "up");
    inside.link(1300, "higher", repeated("../", 1301) + "outside/a.png");
    inside.file(levels, "a.png");
    inside.link(levels, "absolute", inside.at(levels) + "/a.png");
    inside.link(levels, "around", "../../d/d/a.png");
    inside.link(levels, "out", "../../a.png");
    inside.link(levels, "higher", area / "film/a.png");
    DeepDirectories outside(area / "outside", outsideLevels);
    outside.link(outsideLevels, "back", repeated("../", outsideLevels + 1) + "film/a.png");

    const fs::path film = area / "film";
    const fs::path deepest = inside.at(levels);
    const std::string down = repeated("d/", 1300);
    const std::string downOutside = repeated("d/", outsideLevels);
    const DeepRow rows[] = {
        {"a deep file", film, repeated("d/", levels) + "a.png", "sound"},
        {"a deep file after an absolute link", film, "absolute/" + repeated("d/", levels) + "a.png", "sound"},
        {"down and up again with \"..\"", film, down + "up", "sound"},
        {"down and up again after an absolute link", film, "absolute/" + down + "up", "sound"},
        {"down, up, down and up again", film, "absolute/" + down + "zigzag", "sound"},
        {"down and up further than the project", film, "absolute/" + down + "higher", "unsafe"},
        {"down outside", film, "out/" + downOutside + "a.png", "unsafe"},
        {"down outside and back in", film, "out/" + downOutside + "back", "sound"},
        {"a deep project", deepest, "a.png", "sound"},
        {"a deep project, an absolute link that ends inside", deepest, "absolute", "sound"},
        {"a deep project, a link out and back in", deepest, "around", "sound"},
        {"a deep project, a link out", deepest, "out", "unsafe"},
        {"a deep project, an absolute link out", deepest, "higher", "unsafe"},
    };
    for (const DeepRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(audited(row.root, row.path), row.expected);
    }
}

} // namespace
} // namespace kinovane::test
