// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "step.hpp"

namespace film {

// What the phases make. Each of them makes only what the film lacks, marks the shots, and sets the proof
// flags that its files prove.

void makeFrames(Step& step);
void makeClips(Step& step);
void makeSound(Step& step);
void makeRoughCut(Step& step);
void makeMaster(Step& step);
void makeDelivery(Step& step);

} // namespace film
