// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/task.hpp>

/// The local agent runtime (the command-line program quexrun): which models it knows, and which to offer.
namespace kinovane {

/// A model that the runtime knows.
struct KINOVANE_EXPORT QuexRunAgentModel {
    std::string id;
    std::string displayName;
    bool installed = false;
    std::int64_t recommendedUnifiedMemoryGB = 0;
    std::string servingEngine;
    bool startableByQuexRun = false; ///< Whether the runtime can start this model itself.

    bool operator==(const QuexRunAgentModel&) const = default;
};

/// The runtime's copy of the coding agent pi.
struct KINOVANE_EXPORT QuexRunAgentPi {
    bool installed = false;
    std::optional<std::string> path;
    std::optional<std::string> version;

    bool operator==(const QuexRunAgentPi&) const = default;
};

/// The runtime's answer to `agent status --json`.
struct KINOVANE_EXPORT QuexRunAgentStatus {
    std::vector<QuexRunAgentModel> models; ///< In the runtime's order.
    QuexRunAgentPi pi;

    /// Of the models that are installed and that the runtime can start, the one with the largest recommended
    /// memory; the earliest of several such. The machine's own memory does not matter.
    std::optional<QuexRunAgentModel> bestInstalledModel() const;

    bool operator==(const QuexRunAgentStatus&) const = default;
};

/// Asks the agent runtime. Holds nothing but the name of the program; may be copied and used from several
/// threads at once.
class KINOVANE_EXPORT QuexRunAgentClient {
  public:
    /// `executable` is a name or a path, looked up at each call as by FilmToolClient::resolveExecutable.
    explicit QuexRunAgentClient(std::string executable);

    const std::string& executable() const noexcept;

    /// The task fails with FilmToolError (see tooling.hpp).
    Task<QuexRunAgentStatus> status() const;

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
