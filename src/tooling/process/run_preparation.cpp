// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/run_preparation.hpp"

#include <stdexcept>
#include <utility>

#include "common/files/location.hpp"
#include "tooling/process/location_argument.hpp"

namespace kinovane {

RunOptions preparedOptions(RunOptions options, std::map<std::string, std::string> environment) {
    using std::chrono::milliseconds;
    if (options.timeLimit && *options.timeLimit < milliseconds::zero())
        throw std::invalid_argument("the time limit is negative");
    if (options.gracePeriod < milliseconds::zero())
        throw std::invalid_argument("the grace period is negative");
    if (!options.workingDirectory.empty() && !holdsNUL(options.workingDirectory.native()))
        options.workingDirectory = locationArgument("working directory", options.workingDirectory);
    options.environment.merge(environment); // Keeps the values that are there.
    return options;
}

} // namespace kinovane
