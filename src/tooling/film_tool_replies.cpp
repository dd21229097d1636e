#include <kinovane/tooling.hpp>

#include "common/json_instances.hpp"
#include "tooling/reply_tables.hpp"
#include "workspace/project_tables.hpp"

namespace kinovane {

KINOVANE_JSON_WRITABLE(FilmStatusResponse)
KINOVANE_JSON_WRITABLE(FilmVistrelExportReceipt)
KINOVANE_JSON_WRITABLE(PiAgentLaunchSpec)

} // namespace kinovane
