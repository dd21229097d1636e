// SPDX-License-Identifier: Apache-2.0

#include "handoff/layout_results.hpp"
#include "handoff/layout_tables.hpp"

namespace kinovane::test {

std::vector<Layout> textLayouts() {
    return {
        {"a plain name", "a.png", accepted, content},
        {"an absolute path", "/a.png", unsafe, noSuchFile},
        {"an absolute path that exists", "/etc/passwd", unsafe, digestOf("/etc/passwd")},
        {"two slashes at the start", "//a.png", unsafe, noSuchFile},
        {"\"..\" at the start", "../a.png", unsafe, noSuchFile},
        {"\"..\" to a file outside that exists", "../outside/a.png", unsafe, content},
        {"\"..\" out and back in", "../film/a.png", unsafe, content},
        {"more \"..\" than directories before it", "sub/../../x", unsafe, noSuchFile},
        {"\"..\" that stays inside", "sub/../a.png", unsafe, content,
         [](LayoutFiles& files) { files.directory("film/sub"); }},
        {"\"..\" at the end", "sub/..", unsafe, isADirectory,
         [](LayoutFiles& files) { files.directory("film/sub"); }},
        {"\"..\" and a slash at the end", "a.png/../", unsafe, notADirectory},
        {"\"..\" only", "..", unsafe, isADirectory},
        {"two dots at the beginning of a name", "..b", accepted, content,
         [](LayoutFiles& files) { files.file("film/..b"); }},
        {"two dots at the end of a directory's name", "a../x", accepted, content,
         [](LayoutFiles& files) { files.file("film/a../x"); }},
        {"three dots", ".../x", accepted, content, [](LayoutFiles& files) { files.file("film/.../x"); }},
        {"two dots at the beginning of a name in a directory", "sub/..b", accepted, content,
         [](LayoutFiles& files) { files.file("film/sub/..b"); }},
        {"\".\" at the start", "./a.png", accepted, content},
        {"many \".\" in between", "././sub/./a.png", accepted, content,
         [](LayoutFiles& files) { files.file("film/sub/a.png"); }},
        {"a double slash", "sub//a.png", accepted, content,
         [](LayoutFiles& files) { files.file("film/sub/a.png"); }},
        {"a slash after a file", "a.png/", missing, notADirectory},
        {"\".\" after a file", "a.png/.", missing, notADirectory},
        {"a slash after a directory", "sub/", failure(std::errc::is_a_directory), isADirectory,
         [](LayoutFiles& files) { files.directory("film/sub"); }},
        {"the project itself", ".", unsafe, isADirectory},
        {"the project itself, with a slash", "./", unsafe, isADirectory},
        {"an empty path", "", unsafe, isADirectory},
        {"a NUL byte at the end", std::string("a.png\0", 6), unsafe, noSuchFile},
        {"a NUL byte in between", std::string("a.png\0/../../x", 14), unsafe, noSuchFile},
        {"a NUL byte only", std::string("\0", 1), unsafe, noSuchFile},
        {"a name in capitals", "A.PNG", missing, noSuchFile},
        {"a name that is too long", std::string(300, 'n'), missing, tooLong},
        {"a directory's name that is too long", std::string(300, 'n') + "/a.png", missing, tooLong},
        {"a long path with many \".\"", repeated("./", 3000) + "a.png", missing, tooLong},
        {"a long path through a link that leads out", "l/" + repeated("./", 3000) + "a.png", unsafe, tooLong,
         [](LayoutFiles& files) { files.link("film/l", "../outside"); }},
        {"a long path through a link that leads out and back in", "l/" + repeated("./", 3000) + "back",
         missing, tooLong,
         [](LayoutFiles& files) {
             files.link("film/l", "../outside");
             files.link("outside/back", "../film/a.png");
         }},
        {"a long path to the project itself", repeated("./", 3000), unsafe, tooLong},
        {"a long path with \"..\"", repeated("./", 3000) + "../film/a.png", unsafe, tooLong},
        {"a long path of a directory that may not be searched", "sub/" + repeated("./", 3000) + "a.png",
         missing, tooLong,
         [](LayoutFiles& files) {
             files.file("film/sub/a.png");
             files.allow("film/sub", 0444);
         }},
        {"a file so deep that its path is too long",
         "deep/" + repeated(std::string(200, 'd') + "/", 25) + "a.png", missing, tooLong,
         [](LayoutFiles& files) { files.deepFile("film/deep", std::string(200, 'd'), 25); }},
    };
}

} // namespace kinovane::test
