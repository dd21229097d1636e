// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_results.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

std::vector<Layout> linkLayouts() {
    return {
        {"a link to another file", "l", accepted, content,
         [](LayoutFiles& files) { files.link("film/l", "a.png"); }},
        {"a link to a directory", "l/b.png", accepted, content,
         [](LayoutFiles& files) {
             files.file("film/sub/b.png");
             files.link("film/l", "sub");
         }},
        {"a link in a directory, with \"..\"", "sub/l", accepted, content,
         [](LayoutFiles& files) { files.link("film/sub/l", "../a.png"); }},
        {"a link to a file outside", "l", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", "../outside/a.png"); }},
        {"a link to a directory outside", "l/a.png", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", "../outside"); }},
        {"an absolute link to a file outside", "l", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", files.area / "outside/a.png"); }},
        {"an absolute link that ends inside", "l", accepted, content,
         [](LayoutFiles& files) { files.link("film/l", files.area / "film/a.png"); }},
        {"an absolute link to a directory inside", "l/b.png", accepted, content,
         [](LayoutFiles& files) {
             files.file("film/sub/b.png");
             files.link("film/l", files.area / "film/sub");
         }},
        {"a relative link with \"..\" that leads out and ends inside", "l", accepted, content,
         [](LayoutFiles& files) { files.link("film/l", "../film/a.png"); }},
        {"a link out and another one back in", "l/back", accepted, content,
         [](LayoutFiles& files) {
             files.link("film/l", "../outside");
             files.link("outside/back", "../film/a.png");
         }},
        {"a link to a link outside that leads back in", "l", accepted, content,
         [](LayoutFiles& files) {
             files.link("film/l", "../outside/back");
             files.link("outside/back", files.area / "film/a.png");
         }},
        {"a link out, back in, and out again", "l", unsafe, content,
         [](LayoutFiles& files) {
             files.link("film/l", "../outside/back");
             files.link("outside/back", "../film/again");
             files.link("film/again", "../outside/a.png");
         }},
        {"a link to the project itself", "l", unsafe, isADirectory,
         [](LayoutFiles& files) { files.link("film/l", "."); }},
        {"a file through a link to the project itself", "l/a.png", accepted, content,
         [](LayoutFiles& files) { files.link("film/l", "."); }},
        {"a link to the parent directory", "l", unsafe, isADirectory,
         [](LayoutFiles& files) { files.link("film/l", ".."); }},
        {"back in through a link to the parent directory", "l/film/a.png", accepted, content,
         [](LayoutFiles& files) { files.link("film/l", ".."); }},
        {"a link with a slash at its end, to a file", "l", missing, notADirectory,
         [](LayoutFiles& files) { files.link("film/l", "a.png/"); }},
        {"a slash after a link to a file", "l/", missing, notADirectory,
         [](LayoutFiles& files) { files.link("film/l", "a.png"); }},
        {"a dangling link inside", "l", missing, noSuchFile,
         [](LayoutFiles& files) { files.link("film/l", "nothing"); }},
        {"a dangling link to the outside", "l", unsafe, noSuchFile,
         [](LayoutFiles& files) { files.link("film/l", "../outside/nothing"); }},
        {"a dangling link out and back in", "l", missing, noSuchFile,
         [](LayoutFiles& files) { files.link("film/l", "../outside/../film/nothing"); }},
        {"a link with \"..\" after a directory that does not exist", "l", unsafe, noSuchFile,
         [](LayoutFiles& files) { files.link("film/l", "nothing/../../outside/a.png"); }},
        {"a directory that does not exist, after a link out", "l/sub/a.png", unsafe, noSuchFile,
         [](LayoutFiles& files) { files.link("film/l", "../outside"); }},
        {"a link to itself", "l", missing, tooManyLinks,
         [](LayoutFiles& files) { files.link("film/l", "l"); }},
        {"two links to each other", "l", missing, tooManyLinks,
         [](LayoutFiles& files) {
             files.link("film/l", "m");
             files.link("film/m", "l");
         }},
        {"a link loop outside", "l", unsafe, tooManyLinks,
         [](LayoutFiles& files) {
             files.link("film/l", "../outside/l");
             files.link("outside/l", "l");
         }},
        {"40 links, the most that are followed", "l40", accepted, content,
         [](LayoutFiles& files) { files.chain("film/l", 40); }},
        {"41 links", "l41", missing, tooManyLinks, [](LayoutFiles& files) { files.chain("film/l", 41); }},
        {"41 links in one path", repeated("l/", 41) + "a.png", missing, tooManyLinks,
         [](LayoutFiles& files) { files.link("film/l", "."); }},
        {"a directory outside whose name begins like the project's", "l", unsafe, content,
         [](LayoutFiles& files) {
             files.file("film-other/a.png");
             files.link("film/l", "../film-other/a.png");
         }},
        {"a directory outside whose name is the beginning of the project's", "l", unsafe, content,
         [](LayoutFiles& files) {
             files.file("fil/a.png");
             files.link("film/l", "../fil/a.png");
         }},
        {"a link to a device", "l", unsafe, notARegularFile,
         [](LayoutFiles& files) { files.link("film/l", "/dev/zero"); }},
        {"a link to a file of procfs", "l", unsafe, digestOf("/proc/self/comm"),
         [](LayoutFiles& files) { files.link("film/l", "/proc/self/comm"); }, needsProcfs},
        {"a link to an open file of this process", "l", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", files.opened("outside/a.png")); }, needsProcfs},
        {"a link to an open file of this process that lies inside", "l", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", files.opened("film/a.png")); }, needsProcfs},
        {"a file below an open directory of this process that is the project", "l/a.png", unsafe, content,
         [](LayoutFiles& files) { files.link("film/l", files.opened("film")); }, needsProcfs},
        {"an open file that was removed, while another file has the name that procfs gives it", "l", unsafe,
         content,
         [](LayoutFiles& files) {
             files.file("film/b.png");
             files.link("film/l", files.opened("film/b.png"));
             std::filesystem::remove(files.area / "film/b.png");
             files.file("film/b.png (deleted)");
         },
         needsProcfs},
        {"a link through the root directory of this process", "l", unsafe, content,
         [](LayoutFiles& files) {
             files.link("film/l", "/proc/self/root" + (files.area / "film/a.png").native());
         },
         needsProcfs},
        {"an ordinary link of procfs, and back in", "l", accepted, content,
         [](LayoutFiles& files) {
             files.link("film/l", "/proc/self/../.." + (files.area / "film/a.png").native());
         },
         needsProcfs},
        {"a link to the root directory", "l", unsafe, isADirectory,
         [](LayoutFiles& files) { files.link("film/l", "/"); }},
        {"a link to a directory outside that may not be searched", "l/a.png", unsafe, permissionDenied,
         [](LayoutFiles& files) {
             files.file("locked/a.png");
             files.allow("locked", 0);
             files.link("film/l", "../locked");
         }},
        {"a link to a FIFO", "l", failure(std::errc::operation_not_supported), notARegularFile,
         [](LayoutFiles& files) {
             files.fifo("film/pipe");
             files.link("film/l", "pipe");
         }},
        {"a FIFO outside", "l", unsafe, notARegularFile,
         [](LayoutFiles& files) {
             files.fifo("outside/pipe");
             files.link("film/l", "../outside/pipe");
         }},
    };
}

} // namespace kinovane::test
