// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// How often each operation is done.
struct Rounds {
    std::size_t runs = 0;
    std::size_t loads = 0;
    std::size_t builds = 0;
};

/// The operations of an application: runs of programs, loads and builds. Every result is checked; a wrong one
/// throws std::runtime_error.
class Work {
  public:
    Work();

    /// Does all operations by turns, the rarer ones spread evenly among the others.
    void perform(const Rounds& rounds);

  private:
    void run();
    void load() const;
    void build();

    FilmToolClient client_;
    FilmWorkspaceSnapshot snapshot_;
    VistrelHandoff handoff_;
    TemporaryDirectory directory_;
    std::size_t turn_ = 0;
};

} // namespace kinovane::test
