// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_answers.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

namespace {

using Place = LayoutPlace;

} // namespace

std::vector<Layout> linkLayouts() {
    return {
        {"a link to another file", "l", accepted, content, [](Place& p) { p.link("film/l", "a.png"); }},
        {"a link to a folder", "l/b.png", accepted, content,
         [](Place& p) { p.file("film/sub/b.png"), p.link("film/l", "sub"); }},
        {"a link down and up again", "sub/l", accepted, content,
         [](Place& p) { p.link("film/sub/l", "../a.png"); }},
        {"a link to a file outside", "l", unsafe, content,
         [](Place& p) { p.link("film/l", "../outside/a.png"); }},
        {"a link to a folder outside", "l/a.png", unsafe, content,
         [](Place& p) { p.link("film/l", "../outside"); }},
        {"an absolute link to a file outside", "l", unsafe, content,
         [](Place& p) { p.link("film/l", p.area / "outside/a.png"); }},
        {"an absolute link that ends inside", "l", accepted, content,
         [](Place& p) { p.link("film/l", p.area / "film/a.png"); }},
        {"an absolute link to a folder inside", "l/b.png", accepted, content,
         [](Place& p) { p.file("film/sub/b.png"), p.link("film/l", p.area / "film/sub"); }},
        {"a relative link that climbs out and ends inside", "l", accepted, content,
         [](Place& p) { p.link("film/l", "../film/a.png"); }},
        {"a link out and another one back in", "l/back", accepted, content,
         [](Place& p) { p.link("film/l", "../outside"), p.link("outside/back", "../film/a.png"); }},
        {"a link to a link outside that leads back in", "l", accepted, content,
         [](Place& p) {
             p.link("film/l", "../outside/back"), p.link("outside/back", p.area / "film/a.png");
         }},
        {"a link out, back in, and out again", "l", unsafe, content,
         [](Place& p) {
             p.link("film/l", "../outside/back"), p.link("outside/back", "../film/again");
             p.link("film/again", "../outside/a.png");
         }},
        {"a link to the project itself", "l", unsafe, aFolder, [](Place& p) { p.link("film/l", "."); }},
        {"a file through a link to the project itself", "l/a.png", accepted, content,
         [](Place& p) { p.link("film/l", "."); }},
        {"a link to the folder above", "l", unsafe, aFolder, [](Place& p) { p.link("film/l", ".."); }},
        {"back in through a link to the folder above", "l/film/a.png", accepted, content,
         [](Place& p) { p.link("film/l", ".."); }},
        {"a link with a slash at its end, to a file", "l", missing, noFolder,
         [](Place& p) { p.link("film/l", "a.png/"); }},
        {"a slash after a link to a file", "l/", missing, noFolder,
         [](Place& p) { p.link("film/l", "a.png"); }},
        {"a link to nothing, inside", "l", missing, noFile, [](Place& p) { p.link("film/l", "nothing"); }},
        {"a link to nothing, outside", "l", unsafe, noFile,
         [](Place& p) { p.link("film/l", "../outside/nothing"); }},
        {"a link to nothing, out and back in", "l", missing, noFile,
         [](Place& p) { p.link("film/l", "../outside/../film/nothing"); }},
        {"a link that climbs out of a folder that is not there", "l", unsafe, noFile,
         [](Place& p) { p.link("film/l", "nothing/../../outside/a.png"); }},
        {"a folder that is not there, behind a link out", "l/sub/a.png", unsafe, noFile,
         [](Place& p) { p.link("film/l", "../outside"); }},
        {"a link to itself", "l", missing, tooManyLinks, [](Place& p) { p.link("film/l", "l"); }},
        {"two links to each other", "l", missing, tooManyLinks,
         [](Place& p) { p.link("film/l", "m"), p.link("film/m", "l"); }},
        {"a loop outside", "l", unsafe, tooManyLinks,
         [](Place& p) { p.link("film/l", "../outside/l"), p.link("outside/l", "l"); }},
        {"40 links, as many as are followed", "l40", accepted, content,
         [](Place& p) { p.chain("film/l", 40); }},
        {"41 links", "l41", missing, tooManyLinks, [](Place& p) { p.chain("film/l", 41); }},
        {"41 links one after the other on one way", repeated("l/", 41) + "a.png", missing, tooManyLinks,
         [](Place& p) { p.link("film/l", "."); }},
        {"a folder outside whose name begins like the project's", "l", unsafe, content,
         [](Place& p) { p.file("film-other/a.png"), p.link("film/l", "../film-other/a.png"); }},
        {"a folder outside whose name is the beginning of the project's", "l", unsafe, content,
         [](Place& p) { p.file("fil/a.png"), p.link("film/l", "../fil/a.png"); }},
        {"a link to a device", "l", unsafe, noOrdinaryFile, [](Place& p) { p.link("film/l", "/dev/zero"); }},
        {"a link to what the system tells of this process", "l", unsafe, digestOf("/proc/self/comm"),
         [](Place& p) { p.link("film/l", "/proc/self/comm"); }},
        {"a link to an open file of this process", "l", unsafe, content,
         [](Place& p) { p.link("film/l", p.opened("outside/a.png")); }},
        {"a link to an open file of this process that lies inside", "l", unsafe, content,
         [](Place& p) { p.link("film/l", p.opened("film/a.png")); }},
        {"a file behind an open folder of this process that is the project", "l/a.png", unsafe, content,
         [](Place& p) { p.link("film/l", p.opened("film")); }},
        {"an open file that was removed, when another one has the name that the system tells of it", "l",
         unsafe, content,
         [](Place& p) {
             p.file("film/b.png"), p.link("film/l", p.opened("film/b.png"));
             std::filesystem::remove(p.area / "film/b.png");
             p.file("film/b.png (deleted)");
         }},
        {"a link through the root directory of this process", "l", unsafe, content,
         [](Place& p) { p.link("film/l", "/proc/self/root" + (p.area / "film/a.png").native()); }},
        {"an ordinary link in what the system tells of processes, and back in", "l", accepted, content,
         [](Place& p) { p.link("film/l", "/proc/self/../.." + (p.area / "film/a.png").native()); }},
        {"a link to the top of the file system", "l", unsafe, aFolder,
         [](Place& p) { p.link("film/l", "/"); }},
        {"a link to a folder outside that may not be searched", "l/a.png", unsafe, notAllowed,
         [](Place& p) {
             p.file("locked/a.png"), p.allow("locked", 0);
             p.link("film/l", "../locked");
         }},
        {"a link to a FIFO", "l", failure(std::errc::operation_not_supported), noOrdinaryFile,
         [](Place& p) { p.fifo("film/pipe"), p.link("film/l", "pipe"); }},
        {"a FIFO outside", "l", unsafe, noOrdinaryFile,
         [](Place& p) { p.fifo("outside/pipe"), p.link("film/l", "../outside/pipe"); }},
    };
}

} // namespace kinovane::test
