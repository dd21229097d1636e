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

/// Adds up what several workers have read and tells the application, one call at a time and not too often.
class ProgressReport {
  public:
    using Callback = std::function<void(const VerificationProgress&)>;

    ProgressReport(const std::vector<const FilmArtifact*>& artifacts, const Callback& callback);

    /// Tells how much there is to do.
    void begin();

    /// One file on its way. The recorded size is what it counts for, whatever its real one: so the counts
    /// only grow, and end at the totals.
    class File {
      public:
        File(ProgressReport& report, const FilmArtifact& artifact);
        void read(std::size_t bytes);
        void done();

      private:
        ProgressReport& report_;
        const FilmArtifact& artifact_;
        std::uint64_t left_; ///< Of the recorded size.
    };

  private:
    using Clock = std::chrono::steady_clock;

    void advance(const FilmArtifact& artifact, std::uint64_t bytes, bool fileDone);
    void tell();

    const Callback& callback_;
    std::mutex mutex_;
    VerificationProgress progress_;
    Clock::time_point lastCall_;
    bool ended_ = false; ///< A callback has thrown, so nobody is to be told anything more.
};

} // namespace kinovane
