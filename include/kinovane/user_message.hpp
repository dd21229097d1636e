// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <string>

#include <kinovane/export.hpp>

/// One text for every failure.
namespace kinovane {

/// The text that an application shows to a user for an exception of this library or of the C++ library:
///
/// - for an error of this library its `errorDescription()`. Where the fixed words of FilmToolError speak of
///   the film command and another program failed, the name of that program stands in front, such as
///   "vistrel: Film command exited 3."; for a program that a signal ended
///   "vistrel was ended by signal 9 (Killed).", with the words of the program after ": " if it wrote any;
/// - for RunStopped "film: stopped because the time limit was reached" or "film: stopped at the user's
///   request", with the name of the program; without a name "The program was stopped when its time limit was
///   over." or "The program was stopped on request.";
/// - for another requested stop, the std::system_error of operations that read files, "Stopped on request.";
/// - for std::filesystem::filesystem_error "what failed: path: reason", with the second path after " and ";
/// - for std::system_error "what failed: reason", without the number of the error;
/// - for std::bad_alloc "out of memory";
/// - for anything else `what()`.
///
/// Never empty. The text may quote documents and paths unchanged, control characters included; clean it
/// before it is written to a terminal. Safe to call from several threads at once.
KINOVANE_EXPORT std::string userMessage(const std::exception& error);

} // namespace kinovane
