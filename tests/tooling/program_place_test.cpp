#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/child_process.hpp"

namespace kinovane::test {
namespace {

// In a process of its own, because it loses the ground under its feet.
TEST(ProgramPlace, ARelativePathIsNotFoundWhenTheWorkingDirectoryIsGone) {
    EXPECT_EQ(inForkedProcess([] {
                  const TemporaryDirectory directory;
                  std::filesystem::create_directory(directory / "gone");
                  std::filesystem::current_path(directory / "gone");
                  std::filesystem::remove(directory / "gone");
                  try {
                      FilmToolClient::resolveExecutable("tools/film");
                      return std::string("it was found");
                  } catch (const FilmToolError& error) {
                      return error.errorDescription();
                  }
              }),
              "Required executable not found: tools/film");
}

// The search for a program refuses such a name first; whoever starts one without a search is refused as well.
TEST(ProgramPlace, APathWithANULByteIsNeverCut) {
    try {
        const ChildProcess child(std::string("/bin/true\0x", 11), {}, {});
        ADD_FAILURE() << "it was started";
    } catch (const FilmToolError& error) {
        EXPECT_EQ(error.errorDescription(),
                  "Could not launch film command: the program's path holds a NUL byte");
    }
}

} // namespace
} // namespace kinovane::test
