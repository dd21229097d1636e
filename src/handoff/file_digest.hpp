// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "common/digest.hpp"
#include "common/files/atomic_file.hpp"
#include "common/files/regular_file.hpp"

namespace kinovane {

/// Computes the digests of files, one after the other, with one buffer for all of them.
class FileDigest {
  public:
    /// Called with the size of every chunk after it was read.
    using OnRead = std::function<void(std::size_t bytes)>;

    FileDigest();

    /// The digest text of the rest of a file. With `readsAhead`, a large one is read on a second thread.
    /// Throws std::filesystem::filesystem_error, and whatever `onRead` throws.
    std::string of(RegularFile& file, const OnRead& onRead = {}, bool readsAhead = false);

    /// The digest text of what has been written to a file.
    std::string of(AtomicFile& file);

  private:
    bool readAhead(RegularFile& file, const OnRead& onRead);

    Digest digest_;
    std::vector<std::byte> buffer_;
};

} // namespace kinovane
