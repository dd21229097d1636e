// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_results.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

std::vector<Layout> fileLayouts() {
    return {
        {"a file that does not exist", "b.png", missing, noSuchFile},
        {"a directory that does not exist", "sub/a.png", missing, noSuchFile},
        {"a file used as a directory", "a.png/a.png", missing, notADirectory},
        {"a directory in place of a file", "sub", failure(std::errc::is_a_directory), isADirectory,
         [](LayoutFiles& files) { files.directory("film/sub"); }},
        {"a FIFO in place of a file", "pipe", failure(std::errc::operation_not_supported), notARegularFile,
         [](LayoutFiles& files) { files.fifo("film/pipe"); }},
        {"a FIFO used as a directory", "pipe/a.png", missing, notADirectory,
         [](LayoutFiles& files) { files.fifo("film/pipe"); }},
        {"a socket in place of a file", "socket", failure(std::errc::operation_not_supported),
         notARegularFile, [](LayoutFiles& files) { files.socket("film/socket"); }},
        {"a file that may not be read", "b.png", failure(std::errc::permission_denied), permissionDenied,
         [](LayoutFiles& files) {
             files.file("film/b.png");
             files.allow("film/b.png", 0);
         }},
        {"a directory that may be searched but not listed", "sub/a.png", accepted, content,
         [](LayoutFiles& files) {
             files.file("film/sub/a.png");
             files.allow("film/sub", 0111);
         }},
        {"a project that may be searched but not listed", "a.png", accepted, content,
         [](LayoutFiles& files) { files.allow("film", 0111); }},
        {"a directory that may be listed but not searched", "sub/a.png",
         failure(std::errc::permission_denied), permissionDenied,
         [](LayoutFiles& files) {
             files.file("film/sub/a.png");
             files.allow("film/sub", 0444);
         }},
        {"a project that may not be searched", "a.png", failure(std::errc::permission_denied),
         permissionDenied, [](LayoutFiles& files) { files.allow("film", 0444); }},
        {"a hard link to a file outside", "hard.png", accepted, content,
         [](LayoutFiles& files) {
             std::filesystem::create_hard_link(files.area / "outside/a.png", files.area / "film/hard.png");
         }},
    };
}

std::vector<Layout> rootLayouts() {
    return {
        {"the project given through a link", "a.png", accepted, content,
         [](LayoutFiles& files) {
             files.link("given", "film");
             files.root = files.area / "given";
         }},
        {"the project given through a link, with a link back to its real location", "l", accepted, content,
         [](LayoutFiles& files) {
             files.link("given", "film");
             files.root = files.area / "given";
             files.link("film/l", files.area / "film/a.png");
         }},
        {"the project given through a link, with a link back through it", "l", accepted, content,
         [](LayoutFiles& files) {
             files.link("given", "film");
             files.root = files.area / "given";
             files.link("film/l", files.area / "given/a.png");
         }},
        {"a link through the parent directory of the link that the project was given through", "l", unsafe,
         content,
         [](LayoutFiles& files) {
             files.link("given/here", "../film");
             files.root = files.area / "given/here";
             files.file("given/a.png");
             files.link("film/l", files.area / "given/a.png");
         }},
        {"a link above the project", "a.png", accepted, content,
         [](LayoutFiles& files) {
             files.file("real/parent/film/a.png");
             files.link("above", "real/parent");
             files.root = files.area / "above/film";
         }},
        {"the project's directory with a slash at the end", "a.png", accepted, content,
         [](LayoutFiles& files) { files.root = files.area / "film/"; }},
        {"the project's directory with dots", "a.png", accepted, content,
         [](LayoutFiles& files) { files.root = files.area / "film/./../film/."; }},
        {"the project given as an open directory of this process", "a.png", accepted, content,
         [](LayoutFiles& files) { files.root = files.opened("film"); }, needsProcfs},
        {"the project given as an open directory, with a link back to its real location", "l", accepted,
         content,
         [](LayoutFiles& files) {
             files.link("film/l", files.area / "film/a.png");
             files.root = files.opened("film");
         },
         needsProcfs},
        {"the project given as an open directory, with a link back through it", "l", unsafe, content,
         [](LayoutFiles& files) {
             files.root = files.opened("film");
             files.link("film/l", files.root / "a.png");
         },
         needsProcfs},
        {"the project given through the root directory of this process", "l", accepted, content,
         [](LayoutFiles& files) {
             files.link("film/l", files.area / "film/a.png");
             files.root = "/proc/self/root" + (files.area / "film").native();
         },
         needsProcfs},
        {"the whole file system, and a file behind the root directory of this process",
         "proc/self/root/etc/passwd", unsafe, digestOf("/etc/passwd"),
         [](LayoutFiles& files) { files.root = "/"; }, needsProcfs},
        {"the project's directory does not exist", "a.png", missing, noSuchFile,
         [](LayoutFiles& files) { files.root = files.area / "nothing"; }},
        {"the project's directory is a file", "a.png", missing, notADirectory,
         [](LayoutFiles& files) { files.root = files.area / "film/a.png"; }},
        {"the project's directory is a link to itself", "a.png", missing, tooManyLinks,
         [](LayoutFiles& files) {
             files.link("loop", "loop");
             files.root = files.area / "loop";
         }},
    };
}

} // namespace kinovane::test
