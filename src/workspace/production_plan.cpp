// SPDX-License-Identifier: Apache-2.0

#include <kinovane/production_plan.hpp>

#include "common/json/instances.hpp"
#include "workspace/production_plan_tables.hpp"

namespace kinovane {

KINOVANE_JSON_WRITABLE(FilmProductionPlan)
KINOVANE_JSON_WRITABLE(FilmTarget)
KINOVANE_JSON_WRITABLE(FilmCastMember)
KINOVANE_JSON_WRITABLE(FilmLocation)
KINOVANE_JSON_WRITABLE(FilmProductionShot)
KINOVANE_JSON_WRITABLE(FilmDialogueLine)
KINOVANE_JSON_WRITABLE(FilmSoundEffect)

} // namespace kinovane
