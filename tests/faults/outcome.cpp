// SPDX-License-Identifier: Apache-2.0

#include "faults/outcome.hpp"

#include <exception>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::test {

bool namesPath(const std::string& text, const std::filesystem::path& path) {
    return text.find("[" + path.string() + "]") != std::string::npos ||
           text.find("[\"" + path.string() + "\"]") != std::string::npos;
}

Outcome outcomeOf(const std::function<std::string()>& operation) {
    using Kind = Outcome::Kind;
    try {
        return {Kind::result, operation(), {}};
    } catch (const std::system_error& error) {
        return {Kind::systemError, error.what(), error.code()};
    } catch (const FilmProjectError& error) {
        return {Kind::projectError, error.errorDescription(), {}};
    } catch (const VistrelHandoffError& error) {
        return {Kind::handoffError, error.errorDescription(), {}};
    } catch (const FilmToolError& error) {
        return {Kind::toolError, error.errorDescription(), {}};
    } catch (const std::exception& error) {
        return {Kind::undocumented, error.what(), {}};
    }
}

} // namespace kinovane::test
