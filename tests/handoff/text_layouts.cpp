// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_answers.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

namespace {

using Place = LayoutPlace;

} // namespace

std::vector<Layout> textLayouts() {
    return {
        {"a plain name", "a.png", accepted, content},
        {"an absolute path", "/a.png", unsafe, noFile},
        {"an absolute path that exists", "/etc/passwd", unsafe, digestOf("/etc/passwd")},
        {"two slashes in front", "//a.png", unsafe, noFile},
        {"a climb out", "../a.png", unsafe, noFile},
        {"a climb out to a file that exists", "../outside/a.png", unsafe, content},
        {"a climb out and back in", "../film/a.png", unsafe, content},
        {"a climb further than it went down", "sub/../../x", unsafe, noFile},
        {"a climb that stays inside", "sub/../a.png", unsafe, content,
         [](Place& p) { p.directory("film/sub"); }},
        {"a climb at the end", "sub/..", unsafe, aFolder, [](Place& p) { p.directory("film/sub"); }},
        {"a climb and a slash", "a.png/../", unsafe, noFolder},
        {"two dots only", "..", unsafe, aFolder},
        {"two dots at the beginning of a name", "..b", accepted, content,
         [](Place& p) { p.file("film/..b"); }},
        {"two dots at the end of a folder's name", "a../x", accepted, content,
         [](Place& p) { p.file("film/a../x"); }},
        {"three dots", ".../x", accepted, content, [](Place& p) { p.file("film/.../x"); }},
        {"two dots at the beginning of a name in a folder", "sub/..b", accepted, content,
         [](Place& p) { p.file("film/sub/..b"); }},
        {"a dot in front", "./a.png", accepted, content},
        {"many dots in between", "././sub/./a.png", accepted, content,
         [](Place& p) { p.file("film/sub/a.png"); }},
        {"a doubled slash", "sub//a.png", accepted, content, [](Place& p) { p.file("film/sub/a.png"); }},
        {"a slash after a file", "a.png/", missing, noFolder},
        {"a dot after a file", "a.png/.", missing, noFolder},
        {"a slash after a folder", "sub/", failure(std::errc::is_a_directory), aFolder,
         [](Place& p) { p.directory("film/sub"); }},
        {"the project itself", ".", unsafe, aFolder},
        {"the project itself, with a slash", "./", unsafe, aFolder},
        {"nothing", "", unsafe, aFolder},
        {"a NUL byte at the end", std::string("a.png\0", 6), unsafe, noFile},
        {"a NUL byte in between", std::string("a.png\0/../../x", 14), unsafe, noFile},
        {"a NUL byte only", std::string("\0", 1), unsafe, noFile},
        {"a name in capitals", "A.PNG", missing, noFile},
        {"a name that is too long", std::string(300, 'n'), missing, tooLong},
        {"a folder's name that is too long", std::string(300, 'n') + "/a.png", missing, tooLong},
        {"a path that is long for no reason", repeated("./", 3000) + "a.png", missing, tooLong},
        {"a long path through a link that leads out", "l/" + repeated("./", 3000) + "a.png", unsafe, tooLong,
         [](Place& p) { p.link("film/l", "../outside"); }},
        {"a long path through a link that leads out and back in", "l/" + repeated("./", 3000) + "back",
         missing, tooLong,
         [](Place& p) { p.link("film/l", "../outside"), p.link("outside/back", "../film/a.png"); }},
        {"a long path to the project itself", repeated("./", 3000), unsafe, tooLong},
        {"a long path that climbs", repeated("./", 3000) + "../film/a.png", unsafe, tooLong},
        {"a long path of a folder that may not be searched", "sub/" + repeated("./", 3000) + "a.png", missing,
         tooLong, [](Place& p) { p.file("film/sub/a.png"), p.allow("film/sub", 0444); }},
        {"a file deeper than a path can say", "deep/" + repeated(std::string(200, 'd') + "/", 25) + "a.png",
         missing, tooLong, [](Place& p) { p.deepFile("film/deep", std::string(200, 'd'), 25); }},
    };
}

} // namespace kinovane::test
