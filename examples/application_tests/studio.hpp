// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include <kinovane/stop.hpp>
#include <kinovane/task.hpp>

/// The programs that the application runs. A test puts the simulators here.
struct Programs {
    std::string film = "film";
    std::string vistrel = "vistrel";
    std::string quexrun = "quexrun";
    std::chrono::milliseconds gracePeriod = std::chrono::seconds(5); ///< For a program that is stopped.
};

/// The part of an imaginary application that has no window. Every result is the text that the window shows;
/// failures are texts as well.
class Studio {
  public:
    explicit Studio(Programs programs);

    /// The title bar of a film: "The Last Train, 3 shots".
    std::string open(const std::filesystem::path& runManifest) const;

    /// Continues the production on a thread of its own: "Waiting for your approval: rough-cut".
    kinovane::Task<std::string> advance(const std::filesystem::path& runManifest);

    /// Publishes the film on a thread of its own. `showPercent` is called there.
    kinovane::Task<std::string> publish(const std::filesystem::path& runManifest,
                                        const std::filesystem::path& manifest,
                                        std::function<void(int)> showPercent = {});

    /// Stops what was started last.
    void stop() noexcept;

    /// The model that agents use: "Heron 32B".
    std::string model() const;

  private:
    Programs programs_;
    kinovane::StopSource stop_;
};
