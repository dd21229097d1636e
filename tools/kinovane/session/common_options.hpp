// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::tool {

enum class ColorMode {
    automatic, ///< On a terminal, unless NO_COLOR is set or the terminal is "dumb".
    always,
    never,
};

enum class ProgressMode {
    automatic, ///< A line that is redrawn, if standard error is a terminal of the foreground.
    json,      ///< One JSON object a line on standard error.
    none,
};

/// The options that every command has.
struct CommonOptions {
    bool json = false;    ///< Print JSON instead of text, errors included.
    bool quiet = false;   ///< Print no steps and no progress.
    bool verbose = false; ///< Print digests, and each file that is examined.
    ColorMode color = ColorMode::automatic;
    ProgressMode progress = ProgressMode::automatic;
};

} // namespace kinovane::tool
