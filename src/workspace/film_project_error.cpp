// SPDX-License-Identifier: Apache-2.0

#include <kinovane/workspace.hpp>

#include "common/overloaded.hpp"

namespace kinovane {

std::string FilmProjectErrorCases::describe(const Case& value) {
    return std::visit(Overloaded{
                          [](const missingRunManifest& error) {
                              return "No run.json exists at " + error.location.string() + ".";
                          },
                          [](const missingProject& error) {
                              return "No film-project.json exists at " + error.location.string() + ".";
                          },
                          [](const unsupportedContract& error) {
                              return "Unsupported film contract: " + error.identifier + ".";
                          },
                          [](const invalidProject& error) {
                              return "The film project could not be read: " + error.description;
                          },
                      },
                      value);
}

FilmProjectError::~FilmProjectError() = default;

} // namespace kinovane
