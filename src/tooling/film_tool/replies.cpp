// SPDX-License-Identifier: Apache-2.0

#include <kinovane/tooling.hpp>

#include "common/json/instances.hpp"
#include "tooling/film_tool/reply_tables.hpp"
#include "workspace/film_project_tables.hpp"

namespace kinovane {

KINOVANE_JSON_WRITABLE(FilmStatusResponse)
KINOVANE_JSON_WRITABLE(FilmVistrelExportReceipt)
KINOVANE_JSON_WRITABLE(PiAgentLaunchSpec)

} // namespace kinovane
