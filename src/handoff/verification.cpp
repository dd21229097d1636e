// SPDX-License-Identifier: Apache-2.0

#include "handoff/verification.hpp"

#include <algorithm>
#include <atomic>
#include <limits>
#include <mutex>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>

#include "handoff/exported_kinds.hpp"
#include "handoff/project_directory.hpp"
#include "handoff/verification_progress.hpp"

namespace kinovane {

namespace {

/// Each has a buffer of its own, and more than this many never read faster.
constexpr std::size_t mostWorkers = 64;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// One verification, shared by its workers. Each takes the next artifact until none is left that matters.
class Verification {
  public:
    Verification(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                 const HandoffBuildOptions& options, const VerificationOutcomes& outcomes)
        : directory_(root), artifacts_(artifacts), options_(options), outcomes_(outcomes),
          progress_(artifacts, options.onProgress),
          workers_(std::clamp<std::size_t>(options.workers, 1,
                                           std::clamp<std::size_t>(artifacts.size(), 1, mostWorkers))),
          order_(artifacts.size()) {
        std::iota(order_.begin(), order_.end(), std::size_t{0});
        // The largest files first, or the last worker would still be busy with one when the others have
        // nothing left. A single worker keeps the order of the list instead.
        if (workers_ > 1)
            std::sort(order_.begin(), order_.end(), [&](std::size_t left, std::size_t right) {
                return std::pair(artifacts_[right]->bytes, left) < std::pair(artifacts_[left]->bytes, right);
            });
    }

    void run() {
        progress_.begin();
        {
            std::vector<std::jthread> others;
            startOthers(others);
            work();
        }
        if (interruption_)
            std::rethrow_exception(interruption_);
    }

  private:
    // A machine without threads to spare gets the work done with fewer.
    void startOthers(std::vector<std::jthread>& others) {
        try {
            while (others.size() + 1 < workers_)
                others.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            return;
        }
    }

    void work() noexcept {
        try {
            // Where every core has a file to hash, a second thread for reading would only be in the way.
            ArtifactExaminer examiner(directory_, workers_ == 1);
            for (;;) {
                throwIfStopped();
                const std::size_t turn = next_++;
                if (turn >= order_.size())
                    return;
                if (const std::size_t index = order_[turn]; index < firstBad_)
                    examine(examiner, index);
            }
        } catch (const Interruption& interruption) {
            interrupt(interruption.cause);
        } catch (...) {
            interrupt(std::current_exception());
        }
    }

    void examine(ArtifactExaminer& examiner, std::size_t index) {
        ProgressReport::File file(progress_, *artifacts_[index]);
        try {
            examiner.examine(*artifacts_[index], [&](std::size_t bytes) {
                throwIfStopped();
                report([&] { file.read(bytes); });
            });
            outcomes_.onSound(index, examiner);
        } catch (const Interruption&) {
            throw;
        } catch (const ProjectDirectoryError& error) {
            auto failure = std::make_exception_ptr(std::filesystem::filesystem_error(error));
            // No other artifact can be examined either, but an earlier one may be bad by its path alone.
            if (!outcomes_.stopAtFirstFailure)
                throw Interruption{std::move(failure)};
            noteBad(index, std::move(failure));
            return;
        } catch (...) {
            noteBad(index, std::current_exception());
            if (outcomes_.stopAtFirstFailure)
                return;
        }
        report([&] { file.done(); });
    }

    /// Carries an exception that is not about the artifact past the handler for those that are.
    struct Interruption {
        std::exception_ptr cause;
    };

    template <class Report>
    void report(Report tell) {
        try {
            tell();
        } catch (...) {
            throw Interruption{std::current_exception()};
        }
    }

    void throwIfStopped() const {
        if (options_.stop.stop_requested())
            throw Interruption{std::make_exception_ptr(
                std::system_error(std::make_error_code(std::errc::operation_canceled)))};
        if (interrupted_)
            throw Interruption{};
    }

    void noteBad(std::size_t index, std::exception_ptr failure) {
        const std::lock_guard lock(mutex_);
        if (outcomes_.stopAtFirstFailure) {
            if (index > firstBad_)
                return;
            firstBad_ = index;
        }
        outcomes_.onBad(index, std::move(failure));
    }

    void interrupt(std::exception_ptr cause) noexcept {
        const std::lock_guard lock(mutex_);
        if (!interruption_)
            interruption_ = std::move(cause);
        interrupted_ = true;
    }

    const ProjectDirectory directory_;
    const std::vector<const FilmArtifact*>& artifacts_;
    const HandoffBuildOptions& options_;
    const VerificationOutcomes& outcomes_;
    ProgressReport progress_;
    std::size_t workers_;
    std::vector<std::size_t> order_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<std::size_t> firstBad_ = none;
    std::atomic<bool> interrupted_ = false;
    std::mutex mutex_;
    std::exception_ptr interruption_; ///< A stop, or something else that is not about an artifact.
};

} // namespace

std::vector<const FilmArtifact*> exportedArtifacts(const FilmProject& project) {
    std::vector<const FilmArtifact*> exported;
    for (const FilmArtifact& artifact : project.artifacts)
        if (isExportedKind(artifact.kind))
            exported.push_back(&artifact);
    return exported;
}

void verify(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
            const HandoffBuildOptions& options, const VerificationOutcomes& outcomes) {
    Verification(root, artifacts, options, outcomes).run();
}

} // namespace kinovane
