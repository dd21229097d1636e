// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <string>
#include <vector>

#include <kinovane/task.hpp>

namespace kinovane::test {

/// A main loop with the executor of the examples for it. Made, run and destroyed on one thread; only one
/// exists at a time.
class ToolkitLoop {
  public:
    ToolkitLoop() = default;
    ToolkitLoop(const ToolkitLoop&) = delete;
    ToolkitLoop& operator=(const ToolkitLoop&) = delete;
    virtual ~ToolkitLoop() = default;

    virtual Executor executor() = 0;
    virtual void run() = 0; ///< Until `quit` is called by a job.
    virtual void quit() = 0;
};

struct ToolkitRow {
    std::string name;
    std::unique_ptr<ToolkitLoop> (*makeLoop)();
    std::string example; ///< The program that uses the executor; empty if it is tested elsewhere.
};

/// The loop of the examples, and those of the toolkits that were found when the tests were built.
std::vector<ToolkitRow> toolkitLoops();

/// Those with an example.
std::vector<ToolkitRow> toolkitsWithExample();

} // namespace kinovane::test
