// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <utility>

#include <kinovane/process.hpp>

namespace kinovane {

/// A FilmToolError of another program than the film tool. The fixed words of FilmToolError speak of the film
/// command; userMessage puts the name of this program in front of them.
class ProgramError final : public FilmToolError {
  public:
    ProgramError(const FilmToolError& error, std::string program)
        : FilmToolError(error), program_(std::make_shared<const std::string>(std::move(program))) {}

    const std::string& program() const noexcept { return *program_; }

  private:
    std::shared_ptr<const std::string> program_; ///< Shared, so that copying never throws.
};

} // namespace kinovane
