// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "production.hpp"

/// Shows what preflight found, then publishes the film and shows the progress. `production` has a film.
void openPublishDialog(Production& production, QWidget* parent);
