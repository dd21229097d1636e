// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/files/descriptor.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// The content of every file of a layout, inside the project and outside, so that reading a wrong file never
/// gives another digest.
inline constexpr std::string_view layoutContent = "content";
inline constexpr std::string_view layoutDigest =
    "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73";

/// The files of one layout in a temporary directory: the project's directory "film" with the file
/// "film/a.png", and "outside/a.png".
class LayoutFiles {
  public:
    LayoutFiles();

    TemporaryDirectory area;
    std::filesystem::path root; ///< The path given as the project's directory.

    // Names are relative to the area. A link's target is stored unchanged.
    void file(const std::string& name) const;
    void directory(const std::string& name) const;
    void link(const std::string& name, const std::filesystem::path& target) const;
    void fifo(const std::string& name) const;
    void socket(const std::string& name) const;
    /// Opens a file or directory for the lifetime of this object; returns its path in /proc/self/fd.
    std::filesystem::path opened(const std::string& name);
    void allow(const std::string& name, unsigned mode) const;
    /// Nested directories named `component`, with a file "a.png" in the last one; its path may be too long to
    /// open.
    void deepFile(const std::string& name, const std::string& component, int depth) const;
    /// The links name1 → a.png, name2 → name1, …
    void chain(const std::string& name, int length) const;

  private:
    Descriptor open_;
};

/// The expected result of examining an artifact.
struct LayoutOutcome {
    enum class Kind { accepted, unsafe, missing, failure };
    Kind kind = Kind::accepted;
    std::errc code{}; ///< For Kind::failure.

    bool operator==(const LayoutOutcome&) const = default;
};

/// The expected result of VistrelHandoffBuilder::sha256 on the same path, which follows it anywhere.
struct LayoutDigest {
    std::string text; ///< Empty for an error.
    std::errc code{}; ///< Of the error.

    bool operator==(const LayoutDigest&) const = default;
};

struct Layout {
    std::string_view sentence;
    std::string path; ///< The artifact's path.
    LayoutOutcome expected;
    LayoutDigest digest;
    std::function<void(LayoutFiles&)> make = [](LayoutFiles&) {};
    bool procfs = false; ///< Cannot be made where there is no /proc/self.
};

inline constexpr bool needsProcfs = true;

/// All kinds of paths, links and files. To be examined without root privileges, which ignore permissions.
const std::vector<Layout>& containmentLayouts();

} // namespace kinovane::test
