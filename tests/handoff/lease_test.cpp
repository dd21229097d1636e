// SPDX-License-Identifier: Apache-2.0

// Files on which another program holds a write lease, as file servers do.

#include <array>
#include <csignal>
#include <functional>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "common/files/descriptor.hpp"
#include "common/files/retry_interrupted.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

int leasedFile = -1; ///< In the holder's process, for its signal handler.

void releaseLease(int /*signal*/) { ::fcntl(leasedFile, F_SETLEASE, F_UNLCK); }

/// A process that holds a write lease on a file until this object is destroyed or, with Reaction::releases,
/// until the system asks for it.
class LeaseHolder {
  public:
    enum class Reaction { releases, keeps };

    LeaseHolder(const fs::path& file, Reaction reaction) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe2");
        const Descriptor readEnd(ends[0]);
        Descriptor writeEnd(ends[1]);
        process_ = ::fork();
        if (process_ == 0)
            hold(file.c_str(), reaction, writeEnd.get());
        writeEnd.close();
        char ready = 0;
        holds_ = retryInterrupted([&] { return ::read(readEnd.get(), &ready, 1); }) == 1;
    }
    LeaseHolder(const LeaseHolder&) = delete;
    LeaseHolder& operator=(const LeaseHolder&) = delete;
    ~LeaseHolder() {
        ::kill(process_, SIGKILL);
        retryInterrupted([&] { return ::waitpid(process_, nullptr, 0); });
    }

    /// False when the file system has no leases.
    bool holds() const { return holds_; }

  private:
    [[noreturn]] static void hold(const char* file, Reaction reaction, int readyPipe) {
        ::signal(SIGIO, reaction == Reaction::releases ? releaseLease : SIG_IGN);
        leasedFile = ::open(file, O_RDWR | O_CLOEXEC);
        if (::fcntl(leasedFile, F_SETLEASE, F_WRLCK) != 0 || ::write(readyPipe, "x", 1) != 1)
            ::_exit(1);
        for (;;)
            ::pause();
    }

    pid_t process_ = -1;
    bool holds_ = false;
};

std::string resultOf(const std::function<void()>& operation) {
    try {
        operation();
        return "done";
    } catch (const std::system_error& error) {
        return error.code() == std::errc::operation_would_block ? "would block" : error.what();
    } catch (const FilmProjectError& error) {
        return error.what();
    }
}

struct LeaseRow {
    const char* sentence;
    const char* file; ///< The leased file, in the film's directory.
    std::function<void(const FilmWorkspaceSnapshot& film)> operation;
    std::string expected; ///< The result while the lease is kept.
};

void PrintTo(const LeaseRow& row, std::ostream* stream) { *stream << row.sentence; }

class LeasedFile : public testing::TestWithParam<LeaseRow> {
  protected:
    LeasedFile() {
        film_.snapshot.runManifest = film_.directory.write("run.json", "");
        film_.directory.write("film-project.json", smallestProject());
        film_.add("poster", "poster.png", "poster");
    }

    std::string resultWith(LeaseHolder::Reaction reaction) const {
        const LeaseHolder holder(film_.directory / GetParam().file, reaction);
        if (!holder.holds())
            return "no leases";
        return resultOf([&] { GetParam().operation(film_.snapshot); });
    }

    WorkspaceMaker film_;
};

TEST_P(LeasedFile, IsReadOnceTheLeaseIsReleased) {
    const std::string result = resultWith(LeaseHolder::Reaction::releases);
    if (result == "no leases")
        GTEST_SKIP() << "this file system has no leases";
    EXPECT_EQ(result, "done");
}

TEST_P(LeasedFile, IsRefusedWhenTheLeaseIsKept) {
    const std::string result = resultWith(LeaseHolder::Reaction::keeps);
    if (result == "no leases")
        GTEST_SKIP() << "this file system has no leases";
    EXPECT_EQ(result, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    , LeasedFile,
    testing::Values(
        LeaseRow{"a document", "film-project.json",
                 [](const auto& film) { FilmProjectLoader::load(film.runManifest); },
                 "The film project could not be read: film-project.json: Resource temporarily unavailable"},
        LeaseRow{"an artifact of a build", "poster.png",
                 [](const auto& film) { VistrelHandoffBuilder::build(film, "film"); }, "would block"},
        LeaseRow{"the digest of a file", "poster.png",
                 [](const auto& film) { VistrelHandoffBuilder::sha256(film.root / "poster.png"); },
                 "would block"}),
    [](const auto& row) { return std::to_string(row.index); });

} // namespace

} // namespace kinovane::test
