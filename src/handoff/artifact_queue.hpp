// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

#include <kinovane/workspace.hpp>

namespace kinovane {

/// Distributes the artifacts of a verification among its workers, each of which is a thread. A worker that
/// cannot open a file, because the others hold all descriptors that the process may open, gives the artifact
/// back and ends. So a verification with many workers never fails where one worker alone would not.
///
/// May be used from several threads at once.
class ArtifactQueue {
  public:
    /// The calling thread is the first worker. One worker gets the artifacts in the order of the list,
    /// several get the largest first: otherwise one would still be busy with a large file when the others are
    /// done.
    ArtifactQueue(const std::vector<const FilmArtifact*>& artifacts, bool severalWorkers);

    /// To be called before another worker is started.
    void addWorker();

    /// To be called for a worker that could not be started.
    void removeWorker();

    struct Turn {
        std::size_t index = 0; ///< Of the artifact.
        bool alone = false;    ///< Whether no other worker is left.

        bool operator==(const Turn&) const = default;
    };

    /// The next artifact. Absent when there are no more: the worker then ends.
    std::optional<Turn> next();

    /// For an artifact that could not be examined while there were other workers, after its descriptors were
    /// closed. Returns whether the worker goes on, because it is the last one now; otherwise it ends.
    bool giveBack(std::size_t index);

  private:
    std::mutex mutex_;
    std::vector<std::size_t> remaining_; ///< The last one is next.
    std::size_t workers_ = 1;
};

} // namespace kinovane
