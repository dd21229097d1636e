// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "step.hpp"

namespace simulator::film {

// The work of the phases. Each function makes only the files that the film lacks, marks the shots, and sets
// the proof flags.

void makeFrames(Step& step);
void makeClips(Step& step);
/// Dialogue, effects, score and captions.
void makeSound(Step& step);
void makeRoughCut(Step& step);
/// The final master and what its approval needs.
void makeMaster(Step& step);
void makeDelivery(Step& step);

/// Subtitles and their receipt; a part of makeSound.
void makeCaptions(Step& step);

/// The text with "&", "<" and ">" as HTML and WebVTT need them.
std::string markupOf(const std::string& text);

} // namespace simulator::film
