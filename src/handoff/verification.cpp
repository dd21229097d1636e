// SPDX-License-Identifier: Apache-2.0

#include "handoff/verification.hpp"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "handoff/artifact_examiner.hpp"
#include "handoff/artifact_outcome.hpp"
#include "handoff/artifact_queue.hpp"
#include "handoff/asset_identity.hpp"
#include "handoff/project_directory.hpp"
#include "handoff/verification_progress.hpp"

namespace kinovane {

namespace {

/// Every worker has its own buffer, and more workers than this never read faster.
constexpr std::size_t maximumWorkers = 64;

bool lacksDescriptors(std::error_code error) {
    return error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
}

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// One verification, shared by its workers. Each worker examines the next artifact until none is left.
/// In a build, which gives no `outcomes`, the first bad artifact is the failure of the verification, and ends
/// it unless the options ask for all of them. Otherwise every artifact is examined, and `outcomes`, which has
/// one element for each, receives the results.
class Verification {
  public:
    Verification(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                 const HandoffBuildOptions& options, std::vector<ArtifactOutcome>* outcomes)
        : directory_(root), artifacts_(artifacts), options_(options), outcomes_(outcomes),
          progress_(artifacts, options.onProgress),
          workers_(std::clamp<std::size_t>(options.workers, 1,
                                           std::clamp<std::size_t>(artifacts.size(), 1, maximumWorkers))),
          queue_(artifacts, workers_ > 1) {}

    void run() {
        progress_.begin();
        {
            Workers others;
            startOthers(others);
            work();
        }
        if (interruption_)
            std::rethrow_exception(interruption_);
        if (firstFailure_)
            std::rethrow_exception(firstFailure_);
    }

  private:
    /// Joins the threads at the end of its scope. Not every standard library has std::jthread.
    struct Workers {
        Workers() = default;
        Workers(const Workers&) = delete;
        Workers& operator=(const Workers&) = delete;
        ~Workers() {
            for (std::thread& thread : threads)
                thread.join();
        }

        std::vector<std::thread> threads;
    };

    // When the system has no more threads, the work is done with fewer.
    void startOthers(Workers& others) {
        try {
            while (others.threads.size() + 1 < workers_) {
                queue_.addWorker();
                others.threads.emplace_back([this] { work(); });
            }
        } catch (const std::system_error&) {
            queue_.removeWorker(); // The one that could not be started.
        }
    }

    void work() noexcept {
        try {
            // With several workers every core already has a file to hash; reading ahead would only add
            // threads.
            ArtifactExaminer examiner(directory_, workers_ == 1);
            for (;;) {
                throwIfStopped();
                const auto turn = queue_.next();
                if (!turn)
                    return;
                if (turn->index < firstBad_ && !examine(examiner, *turn) && !queue_.giveBack(turn->index))
                    return;
            }
        } catch (const Interruption& interruption) {
            interrupt(interruption.cause);
        } catch (...) {
            interrupt(std::current_exception());
        }
    }

    bool isBuild() const noexcept { return outcomes_ == nullptr; }
    bool stopsAtFirstFailure() const noexcept { return isBuild() && !options_.examineAll; }

    /// Returns false if there were no descriptors to examine it, which other workers may hold.
    bool examine(ArtifactExaminer& examiner, const ArtifactQueue::Turn& turn) {
        const std::size_t index = turn.index;
        const FilmArtifact& artifact = *artifacts_[index];
        ProgressReport::File file(progress_, artifact);
        std::exception_ptr failure;
        std::optional<std::uint64_t> actualBytes;
        bool sizeDiffers = false;
        try {
            // The size and the contents are read through one descriptor, so they belong to the same file even
            // if another one takes its place meanwhile.
            RegularFile opened = examiner.open(artifact);
            actualBytes = opened.size();
            sizeDiffers =
                !isBuild() && options_.compareSizes && std::cmp_not_equal(opened.size(), artifact.bytes);
            if (!sizeDiffers)
                examiner.requireDigest(artifact, opened, [&](std::size_t bytes) {
                    throwIfStopped();
                    report([&] { file.read(bytes); });
                });
            // Here, and not when the manifest is made: a later artifact must not be opened before this error.
            if (isBuild())
                requireAssetID(artifact);
        } catch (const Interruption&) {
            throw;
        } catch (const ProjectDirectoryError& error) {
            failure = std::make_exception_ptr(std::filesystem::filesystem_error(error));
            // No other file can be opened either, but an earlier artifact may have an unsafe path, which is
            // refused without opening anything.
            if (!isBuild())
                throw Interruption{std::move(failure)};
        } catch (const std::filesystem::filesystem_error& error) {
            if (!turn.alone && lacksDescriptors(error.code()))
                return false;
            failure = std::current_exception();
        } catch (...) {
            failure = std::current_exception();
        }
        if (failure && isBuild())
            noteFailure(index, failure);
        report([&] {
            if (isBuild() && !options_.onOutcome)
                return;
            ArtifactOutcome outcome = outcomeOf(artifact, failure);
            outcome.actualBytes = actualBytes;
            outcome.sizeDiffers = sizeDiffers;
            tellOutcome(outcome);
            if (!isBuild())
                (*outcomes_)[index] = std::move(outcome);
        });
        if (!failure || !stopsAtFirstFailure())
            report([&] { file.done(); });
        return true;
    }

    void tellOutcome(const ArtifactOutcome& outcome) {
        if (!options_.onOutcome)
            return;
        const std::lock_guard lock(outcomeMutex_);
        options_.onOutcome(outcome);
    }

    /// Carries an exception that is not about one artifact past the handlers for those that are.
    struct Interruption {
        std::exception_ptr cause;
    };

    template <class Report>
    void report(Report callback) {
        try {
            callback();
        } catch (...) {
            throw Interruption{std::current_exception()};
        }
    }

    void throwIfStopped() const {
        if (options_.stop.stopRequested())
            throw Interruption{std::make_exception_ptr(
                std::system_error(std::make_error_code(std::errc::operation_canceled)))};
        if (interrupted_)
            throw Interruption{};
    }

    void noteFailure(std::size_t index, const std::exception_ptr& failure) {
        const std::lock_guard lock(mutex_);
        if (index < firstFailed_) {
            firstFailed_ = index;
            firstFailure_ = failure;
            if (stopsAtFirstFailure())
                firstBad_ = index;
        }
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
    std::vector<ArtifactOutcome>* const outcomes_; ///< Null in a build. A worker writes only the elements of
                                                   ///< the artifacts that it examined.
    ProgressReport progress_;
    std::size_t workers_;
    ArtifactQueue queue_;
    std::atomic<std::size_t> firstBad_ = none; ///< Index of the first bad artifact, if that ends the work.
    std::atomic<bool> interrupted_ = false;
    std::mutex outcomeMutex_; ///< Held during `onOutcome`.
    std::mutex mutex_;
    std::size_t firstFailed_ = none;
    std::exception_ptr firstFailure_;
    std::exception_ptr interruption_; ///< A stop, or another failure that is not about one artifact.
};

} // namespace

void requireSound(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                  const HandoffBuildOptions& options) {
    Verification(root, artifacts, options, nullptr).run();
}

std::vector<ArtifactOutcome> examineAll(const std::filesystem::path& root,
                                        const std::vector<const FilmArtifact*>& artifacts,
                                        const HandoffBuildOptions& options) {
    std::vector<ArtifactOutcome> outcomes(artifacts.size());
    Verification(root, artifacts, options, &outcomes).run();
    return outcomes;
}

} // namespace kinovane
