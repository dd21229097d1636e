// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/task.hpp>

/// The status of the local agent runtime (the command-line program quexrun), and the choice of a model.
namespace kinovane {

/// A model that the runtime knows, `models[]` of the reply to `agent status --json`.
struct KINOVANE_EXPORT QuexRunAgentModel {
    std::string id;                              ///< The identifier of the model.
    std::string displayName;                     ///< The name for display.
    bool installed = false;                      ///< Whether the model's files are there.
    std::int64_t recommendedUnifiedMemoryGB = 0; ///< In gigabytes.
    std::string servingEngine;                   ///< The engine that serves the model, as text.
    bool startableByQuexRun = false;             ///< Whether the runtime can start this model itself.

    bool operator==(const QuexRunAgentModel&) const = default;
};

/// The runtime's copy of the coding agent pi, `pi` of the reply to `agent status --json`.
struct KINOVANE_EXPORT QuexRunAgentPi {
    bool installed = false;             ///< Whether the runtime has a copy.
    std::optional<std::string> path;    ///< The path of the program, where it is known.
    std::optional<std::string> version; ///< The version as text, where it is known.

    bool operator==(const QuexRunAgentPi&) const = default;
};

/// The runtime's reply to `agent status --json`.
struct KINOVANE_EXPORT QuexRunAgentStatus {
    std::vector<QuexRunAgentModel> models; ///< In the runtime's order.
    QuexRunAgentPi pi;                     ///< The coding agent.

    /// Among the models that are installed and that the runtime can start, returns the one with the largest
    /// recommended memory, and the first of several with the same. Absent if there is none. The memory of
    /// this machine is not considered.
    std::optional<QuexRunAgentModel> bestInstalledModel() const;

    bool operator==(const QuexRunAgentStatus&) const = default;
};

/// Runs the agent runtime's command-line program. Holds only the name of the program; may be copied, and used
/// on several threads at the same time.
class KINOVANE_EXPORT QuexRunAgentClient {
  public:
    /// `executable` is a name or a path. Every call looks it up as FilmToolClient::resolveExecutable does.
    explicit QuexRunAgentClient(std::string executable);

    /// The name or path, as it was given.
    const std::string& executable() const noexcept;

    /// Runs `agent status --json`. The task fails with FilmToolError, as those of FilmToolClient
    /// (tooling.hpp) do.
    Task<QuexRunAgentStatus> status(RunOptions options = RunOptions()) const;

    bool operator==(const QuexRunAgentClient&) const = default;

  private:
    std::string executable_;
};

template <>
inline constexpr JSONForm jsonForm<QuexRunAgentModel> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<QuexRunAgentPi> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<QuexRunAgentStatus> = JSONForm::readingAndWriting;

} // namespace kinovane
