// SPDX-License-Identifier: Apache-2.0

#include <kinovane/treatment.hpp>

#include "common/json/instances.hpp"
#include "workspace/treatment_table.hpp"

namespace kinovane {

KINOVANE_JSON_WRITABLE(FilmTreatment)

} // namespace kinovane
