// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_answers.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

namespace {

using Place = LayoutPlace;

} // namespace

std::vector<Layout> fileLayouts() {
    return {
        {"no file", "b.png", missing, noFile},
        {"no folder", "sub/a.png", missing, noFile},
        {"a file used as a folder", "a.png/a.png", missing, noFolder},
        {"a folder in place of a file", "sub", failure(std::errc::is_a_directory), aFolder,
         [](Place& p) { p.directory("film/sub"); }},
        {"a FIFO in place of a file", "pipe", failure(std::errc::operation_not_supported), noOrdinaryFile,
         [](Place& p) { p.fifo("film/pipe"); }},
        {"a FIFO used as a folder", "pipe/a.png", missing, noFolder, [](Place& p) { p.fifo("film/pipe"); }},
        {"a socket in place of a file", "socket", failure(std::errc::operation_not_supported), noOrdinaryFile,
         [](Place& p) { p.socket("film/socket"); }},
        {"a file that may not be read", "b.png", failure(std::errc::permission_denied), notAllowed,
         [](Place& p) { p.file("film/b.png"), p.allow("film/b.png", 0); }},
        {"a folder that may be searched but not listed", "sub/a.png", accepted, content,
         [](Place& p) { p.file("film/sub/a.png"), p.allow("film/sub", 0111); }},
        {"a project that may be searched but not listed", "a.png", accepted, content,
         [](Place& p) { p.allow("film", 0111); }},
        {"a folder that may be listed but not searched", "sub/a.png", failure(std::errc::permission_denied),
         notAllowed, [](Place& p) { p.file("film/sub/a.png"), p.allow("film/sub", 0444); }},
        {"a project that may not be searched", "a.png", failure(std::errc::permission_denied), notAllowed,
         [](Place& p) { p.allow("film", 0444); }},
        {"a hard link to a file outside", "hard.png", accepted, content,
         [](Place& p) {
             std::filesystem::create_hard_link(p.area / "outside/a.png", p.area / "film/hard.png");
         }},
    };
}

std::vector<Layout> rootLayouts() {
    return {
        {"the project given through a link", "a.png", accepted, content,
         [](Place& p) { p.link("given", "film"), p.root = p.area / "given"; }},
        {"the project given through a link, with a link back to its real place", "l", accepted, content,
         [](Place& p) {
             p.link("given", "film"), p.root = p.area / "given";
             p.link("film/l", p.area / "film/a.png");
         }},
        {"the project given through a link, with a link back through it", "l", accepted, content,
         [](Place& p) {
             p.link("given", "film"), p.root = p.area / "given";
             p.link("film/l", p.area / "given/a.png");
         }},
        {"a link beside the link that the project was given through", "l", unsafe, content,
         [](Place& p) {
             p.link("given/here", "../film"), p.root = p.area / "given/here";
             p.file("given/a.png"), p.link("film/l", p.area / "given/a.png");
         }},
        {"a link above the project", "a.png", accepted, content,
         [](Place& p) {
             p.file("real/parent/film/a.png"), p.link("above", "real/parent");
             p.root = p.area / "above/film";
         }},
        {"the project's folder with a slash at the end", "a.png", accepted, content,
         [](Place& p) { p.root = p.area / "film/"; }},
        {"the project's folder with dots", "a.png", accepted, content,
         [](Place& p) { p.root = p.area / "film/./../film/."; }},
        {"the project given as an open folder of this process", "a.png", accepted, content,
         [](Place& p) { p.root = p.opened("film"); }},
        {"the project given as an open folder, with a link back to its real place", "l", accepted, content,
         [](Place& p) {
             p.link("film/l", p.area / "film/a.png");
             p.root = p.opened("film");
         }},
        {"the project given as an open folder, with a link back through it", "l", unsafe, content,
         [](Place& p) {
             p.root = p.opened("film");
             p.link("film/l", p.root / "a.png");
         }},
        {"the project given through the root directory of this process", "l", accepted, content,
         [](Place& p) {
             p.link("film/l", p.area / "film/a.png");
             p.root = "/proc/self/root" + (p.area / "film").native();
         }},
        {"the whole file system, and a file behind the root directory of this process",
         "proc/self/root/etc/passwd", unsafe, digestOf("/etc/passwd"), [](Place& p) { p.root = "/"; }},
        {"the project's folder is not there", "a.png", missing, noFile,
         [](Place& p) { p.root = p.area / "nothing"; }},
        {"the project's folder is a file", "a.png", missing, noFolder,
         [](Place& p) { p.root = p.area / "film/a.png"; }},
        {"the project's folder is a link to itself", "a.png", missing, tooManyLinks,
         [](Place& p) { p.link("loop", "loop"), p.root = p.area / "loop"; }},
    };
}

} // namespace kinovane::test
