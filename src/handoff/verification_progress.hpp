// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// Adds up how much several workers have read and calls the application, from one thread at a time and at
/// limited intervals.
class ProgressReport {
  public:
    using Callback = std::function<void(const VerificationProgress&)>;

    ProgressReport(const std::vector<const FilmArtifact*>& artifacts, const Callback& callback);

    /// Reports the totals.
    void begin();

    /// The progress of one file. It counts with its recorded size, whatever the real one is, so the counts
    /// never decrease and end at the totals.
    class File {
      public:
        File(ProgressReport& report, const FilmArtifact& artifact);
        void read(std::size_t bytes);
        void done();

      private:
        ProgressReport& report_;
        const FilmArtifact& artifact_;
        std::uint64_t remaining_; ///< Of the recorded size.
    };

  private:
    using Clock = std::chrono::steady_clock;

    void advance(const FilmArtifact& artifact, std::uint64_t bytes, bool fileDone);
    void call();

    const Callback& callback_;
    std::mutex mutex_;
    VerificationProgress progress_;
    Clock::time_point lastCall_;
    bool ended_ = false; ///< The callback threw, so it is not called again.
};

} // namespace kinovane
