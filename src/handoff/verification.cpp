#include "handoff/verification.hpp"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <mutex>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>

#include "handoff/artifact_examiner.hpp"
#include "handoff/project_directory.hpp"
#include "handoff/verification_progress.hpp"

namespace kinovane {

namespace {

/// Each has a buffer of its own, and more than this many never read faster.
constexpr std::size_t mostWorkers = 64;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// One verification, shared by its workers. Each takes the next artifact until none is left, or until no
/// artifact that is left could change the outcome any more.
class Verification {
  public:
    Verification(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                 const HandoffBuildOptions& options)
        : directory_(root), artifacts_(artifacts), options_(options),
          progress_(artifacts, options.onProgress), order_(artifacts.size()), assets_(artifacts.size()) {
        std::iota(order_.begin(), order_.end(), std::size_t{0});
    }

    std::vector<VistrelHandoffAsset> run() {
        const std::size_t workers = std::clamp<std::size_t>(
            options_.workers, 1, std::clamp<std::size_t>(order_.size(), 1, mostWorkers));
        // The largest files first, or the last worker would still be busy with one when the others have
        // nothing left. A single worker keeps the order of the list instead.
        if (workers > 1)
            std::sort(order_.begin(), order_.end(), [&](std::size_t left, std::size_t right) {
                return std::pair(artifacts_[right]->bytes, left) < std::pair(artifacts_[left]->bytes, right);
            });
        progress_.begin();
        {
            std::vector<std::jthread> others;
            startOthers(others, workers - 1);
            work();
        }
        if (interruption_)
            std::rethrow_exception(interruption_);
        if (failure_)
            std::rethrow_exception(failure_);
        return std::move(assets_);
    }

  private:
    // A machine without threads to spare gets the work done with fewer.
    void startOthers(std::vector<std::jthread>& others, std::size_t count) {
        try {
            while (others.size() < count)
                others.emplace_back([this] { work(); });
        } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): see above
        }
    }

    void work() noexcept {
        try {
            ArtifactExaminer examiner(directory_);
            for (;;) {
                throwIfStopped();
                const std::size_t turn = next_++;
                if (turn >= order_.size())
                    return;
                if (const std::size_t index = order_[turn]; index < firstBad_)
                    examine(examiner, index);
            }
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
            assets_[index] = examiner.assetOf(*artifacts_[index]);
        } catch (const Interruption&) {
            throw;
        } catch (...) {
            noteBad(index, std::current_exception());
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
        if (index < firstBad_) {
            firstBad_ = index;
            failure_ = std::move(failure);
        }
    }

    void interrupt(std::exception_ptr exception) noexcept {
        try {
            std::rethrow_exception(exception);
        } catch (const Interruption& interruption) {
            exception = interruption.cause;
        } catch (...) { // NOLINT(bugprone-empty-catch): it is kept as it is
        }
        const std::lock_guard lock(mutex_);
        if (!interruption_)
            interruption_ = std::move(exception);
        interrupted_ = true;
    }

    const ProjectDirectory directory_;
    const std::vector<const FilmArtifact*>& artifacts_;
    const HandoffBuildOptions& options_;
    ProgressReport progress_;
    std::vector<std::size_t> order_;
    std::vector<VistrelHandoffAsset> assets_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<std::size_t> firstBad_ = none;
    std::atomic<bool> interrupted_ = false;
    std::mutex mutex_;
    std::exception_ptr failure_;      ///< Of the artifact `firstBad_`.
    std::exception_ptr interruption_; ///< A stop, or something else that is not about an artifact.
};

} // namespace

std::vector<VistrelHandoffAsset> verifiedAssets(const std::filesystem::path& root,
                                                const std::vector<const FilmArtifact*>& artifacts,
                                                const HandoffBuildOptions& options) {
    return Verification(root, artifacts, options).run();
}

} // namespace kinovane
