// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <kinovane/process.hpp>

namespace kinovane {

/// A FilmToolError with what its cases do not hold. userMessage makes its text of it.
class ProgramError final : public FilmToolError {
  public:
    struct Details {
        /// The name of a program other than the film tool; empty for the film tool. The fixed words of
        /// FilmToolError speak of the film command, so the name stands in front of them.
        std::string program;
        std::optional<int> signal; ///< The signal that ended the program.
    };

    ProgramError(const FilmToolError& error, Details details)
        : FilmToolError(error), details_(std::make_shared<const Details>(std::move(details))) {}

    const Details& details() const noexcept { return *details_; }

  private:
    std::shared_ptr<const Details> details_; ///< Shared, so that copying never throws.
};

/// The signal that ended the program, if the error knows of one.
inline std::optional<int> endingSignal(const FilmToolError& error) {
    const auto* details = dynamic_cast<const ProgramError*>(&error);
    return details == nullptr ? std::nullopt : details->details().signal;
}

} // namespace kinovane
