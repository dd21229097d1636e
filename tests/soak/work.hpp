// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// How often each thing is done.
struct Rounds {
    std::size_t runs = 0;
    std::size_t loads = 0;
    std::size_t builds = 0;
};

/// What an application does all day. Every result is checked; throws std::runtime_error when one is wrong.
class Work {
  public:
    Work();

    /// Does everything by turns, the rarer things spread evenly among the others.
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
