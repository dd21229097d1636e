// SPDX-License-Identifier: Apache-2.0

#include <kinovane/handoff.hpp>

#include "common/json/instances.hpp"
#include "handoff/handoff_document.hpp"
#include "handoff/handoff_tables.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"

namespace kinovane {

TextBuffer documentOf(const VistrelHandoff& handoff) { return json::write(handoff, JSONFormat::pretty); }

KINOVANE_JSON_WRITABLE(VistrelHandoff)
KINOVANE_JSON_WRITABLE(VistrelHandoffSource)
KINOVANE_JSON_WRITABLE(VistrelHandoffProject)
KINOVANE_JSON_WRITABLE(VistrelHandoffShot)
KINOVANE_JSON_WRITABLE(VistrelHandoffAsset)
KINOVANE_JSON_WRITABLE(VistrelImportReceipt)

} // namespace kinovane
