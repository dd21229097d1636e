// SPDX-License-Identifier: Apache-2.0

#pragma once

/// What the help of the tool and of its commands ends with: examples and notes. These lines are not wrapped.
namespace kinovane::tool {

inline constexpr const char* mainFooter = R"(Examples:
  kinovane status                 where the film in this folder stands, and what to do next
  kinovane verify my-film         examine every file that is handed over
  kinovane publish --dry-run      check the film in this folder with Vistrel

Exit statuses:
  0    done
  1    something unexpected went wrong
  2    the arguments were not understood, or would replace one of the film's own files
  3    the workspace could not be read
  4    the film cannot be handed over: a file is missing, damaged or misplaced, or the
       documents prevent it
  5    an external program is missing, failed, or gave no valid reply
  6    a file or folder could not be read or written
  7    Vistrel refused the film
  130  interrupted by Ctrl-C
)";

inline constexpr const char* verifyFooter = R"(Examples:
  kinovane verify my-film
  kinovane verify --all --unrecorded film-1 film-2
  kinovane verify --write-checksums - | sha256sum --check

Ends with the status 0 when every file is sound, with 4 when a file is missing, changed
or misplaced, and with 6 when the only problem is files that could not be read.
)";

inline constexpr const char* copyFooter = R"(Example:
  kinovane copy my-film /media/archive/my-film

A copy that was interrupted is continued by the same command. A file of the target that
differs from the film is reported and never replaced.
)";

inline constexpr const char* publishFooter = R"(Examples:
  kinovane publish --dry-run
  kinovane publish my-film --vistrel /opt/vistrel/bin/vistrel
  SOURCE_DATE_EPOCH=0 kinovane publish --manifest-only --output - >manifest.json

Nothing is imported unless every file of the film has the digest that the project
records for it, and Vistrel has accepted the manifest in a dry run.
)";

inline constexpr const char* timelineFooter = R"(Examples:
  kinovane timeline my-film --format otio --output my-film.otio
  kinovane timeline my-film --format edl --frame-rate 29.97 --output my-film.edl

Each cut is rounded to the nearest frame from its own time, so that no shot is more than
half a frame away from its place. An EDL has the picture only; the sounds are comments.
)";

inline constexpr const char* artifactsFooter = R"(Example:
  kinovane artifacts --kind shot-clip --paths -0 | xargs -0 ls -l
)";

inline constexpr const char* openFooter = R"(Examples:
  kinovane open                   the best cut
  kinovane open shot-03           the clip of a shot
  kinovane open poster --print    the path of the poster
)";

inline constexpr const char* storyboardFooter = R"(Examples:
  kinovane storyboard my-film --output my-film.html --open
  kinovane storyboard my-film --output my-film.html --verify
  kinovane storyboard handoff.json --output film.html --embed-limit 0

SIZE is a number of bytes, or ends in kB, MB or GB. Key frames are embedded first. Linked
files are found as long as the page and the film stay where they are.
With --verify the command ends as "kinovane verify --all" does, after the page is written.
)";

inline constexpr const char* filmToolFooter =
    R"(The film tool's output is shown as it arrives. Ctrl-C stops the tool and what it started.
Afterwards the command shows what changed in the film.
)";

inline constexpr const char* doctorFooter = R"(Example:
  kinovane doctor --film /opt/film/bin/film

Ends with the status 0 when all four programs are found and quexrun replies, and
otherwise with 5. It is no failure when no model is installed.
)";

} // namespace kinovane::tool
