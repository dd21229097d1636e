# SPDX-License-Identifier: Apache-2.0
"""The short page that lies beside the film."""

from .moving import FPS
from .scenes import HEIGHT, WIDTH
from .story import FOLDER, SHOTS, TITLE, TOTAL


def text():
    return f"""# {TITLE}

A fable of {TOTAL:g} seconds: on the foggy island of Brèmes the seventh lamp of the quay will not light, the last ferry
is still at sea, and a girl lends the old lamplighter the lamp of her bicycle.

To watch it, open `delivery/{FOLDER}.mp4` (with captions). To look at every shot, open `review/package.html`.

| Files | Contents |
|---|---|
| `run.json`, `film-project.json` | the run and the state of the project after delivery, with every file's size and digest |
| `production-plan.json`, `treatment.json` | the {len(SHOTS)} shots, cast and places; the story in prose |
| `frames/`, `clips/` | key frame and clip of each shot, {WIDTH} × {HEIGHT}, {FPS} frames a second |
| `cast/`, `locations/` | portraits and empty sets |
| `dialogue/`, `effects/`, `score/` | voices (humming, without words), sound effects, a music box |
| `edit/`, `cuts/`, `masters/`, `delivery/` | the stages from edited blocks to the finished film |
| `subtitles/`, `receipts/`, `review/`, `inspection/` | captions, checks and reviews |
| `takes/`, `logs/` | a rejected take, and the prompts; these are not exported |

Nothing was photographed or recorded: `scripts/make-sample-film` generates everything with Python's standard
library and ffmpeg, with the same bytes each time. The people, places and model names are invented.
"""
