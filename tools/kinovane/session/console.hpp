// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string_view>

#include <boost/json/fwd.hpp>

#include "session/common_options.hpp"

namespace kinovane::tool {

/// The two streams of a command: results go to standard output; steps, progress and errors to standard error.
/// All text is cleaned here of characters that control a terminal, except line breaks; styles are shown in
/// color or left out. May be used from several threads at once.
class Console {
  public:
    explicit Console(const CommonOptions& options);

    const CommonOptions& options() const noexcept { return options_; }

    /// The width for results: of the terminal, at least 40; 100 when standard output is no terminal.
    std::size_t columns() const noexcept;

    /// Writes a result, without a buffer. Throws std::filesystem::filesystem_error when not all of it can be
    /// written.
    void result(std::string_view text) const;
    void result(const boost::json::value& document) const;

    /// Writes bytes that another program reads, unchanged.
    void bytes(std::string_view bytes) const;

    /// Writes what the command does now or has done to standard error, unless JSON or quiet output is wanted.
    void step(std::string_view text) const noexcept;

    /// Writes to standard error. Errors are ignored, so that a closed pipe ends no command.
    void message(std::string_view text) const noexcept;
    void message(const boost::json::value& document) const noexcept;

    /// Whether a line that is redrawn can be shown on standard error.
    bool showsProgressLine() const noexcept;

  private:
    CommonOptions options_;
    bool colorOfResults_;
    bool colorOfMessages_;
};

/// Writes all bytes without a buffer. Returns the number of the error, or 0.
int writeAll(int descriptor, std::string_view text) noexcept;

/// The width of lines that nothing limits.
inline constexpr std::size_t anyColumns = 1'000'000;

/// The columns of the terminal that the descriptor is connected to, or `otherwise`.
std::size_t terminalColumns(int descriptor, std::size_t otherwise) noexcept;

} // namespace kinovane::tool
