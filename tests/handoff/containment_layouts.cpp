#include "handoff/containment_layouts.hpp"

namespace kinovane::test {

namespace {

using Kind = LayoutOutcome::Kind;
using Place = LayoutPlace;

const LayoutOutcome accepted{Kind::accepted, {}};
const LayoutOutcome unsafe{Kind::unsafe, {}};
const LayoutOutcome missing{Kind::missing, {}};

LayoutOutcome failure(std::errc code) { return {Kind::failure, code}; }

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int time = 0; time < times; ++time)
        result += text;
    return result;
}

std::vector<Layout> textLayouts() {
    return {
        {"a plain name", "a.png", accepted},
        {"an absolute path", "/a.png", unsafe},
        {"an absolute path that exists", "/etc/passwd", unsafe},
        {"two slashes in front", "//a.png", unsafe},
        {"a climb out", "../a.png", unsafe},
        {"a climb out to a file that exists", "../outside/a.png", unsafe},
        {"a climb out and back in", "../film/a.png", unsafe},
        {"a climb further than it went down", "sub/../../x", unsafe},
        {"a climb that stays inside", "sub/../a.png", unsafe, [](Place& p) { p.directory("film/sub"); }},
        {"a climb at the end", "sub/..", unsafe, [](Place& p) { p.directory("film/sub"); }},
        {"a climb and a slash", "a.png/../", unsafe},
        {"two dots only", "..", unsafe},
        {"two dots at the beginning of a name", "..b", accepted, [](Place& p) { p.file("film/..b"); }},
        {"two dots at the end of a folder's name", "a../x", accepted, [](Place& p) { p.file("film/a../x"); }},
        {"three dots", ".../x", accepted, [](Place& p) { p.file("film/.../x"); }},
        {"two dots at the beginning of a name in a folder", "sub/..b", accepted,
         [](Place& p) { p.file("film/sub/..b"); }},
        {"a dot in front", "./a.png", accepted},
        {"many dots in between", "././sub/./a.png", accepted, [](Place& p) { p.file("film/sub/a.png"); }},
        {"a doubled slash", "sub//a.png", accepted, [](Place& p) { p.file("film/sub/a.png"); }},
        {"a slash after a file", "a.png/", missing},
        {"a dot after a file", "a.png/.", missing},
        {"a slash after a folder", "sub/", failure(std::errc::is_a_directory),
         [](Place& p) { p.directory("film/sub"); }},
        {"the project itself", ".", unsafe},
        {"the project itself, with a slash", "./", unsafe},
        {"nothing", "", unsafe},
        {"a NUL byte at the end", std::string("a.png\0", 6), unsafe},
        {"a NUL byte in between", std::string("a.png\0/../../x", 14), unsafe},
        {"a NUL byte only", std::string("\0", 1), unsafe},
        {"a name in capitals", "A.PNG", missing},
        {"a name that is too long", std::string(300, 'n'), missing},
        {"a folder's name that is too long", std::string(300, 'n') + "/a.png", missing},
        {"a path that is long for no reason", repeated("./", 3000) + "a.png", accepted},
        {"a file deeper than a path can say", "deep/" + repeated(std::string(200, 'd') + "/", 25) + "a.png",
         accepted, [](Place& p) { p.deepFile("film/deep", std::string(200, 'd'), 25); }},
    };
}

std::vector<Layout> fileLayouts() {
    return {
        {"no file", "b.png", missing},
        {"no folder", "sub/a.png", missing},
        {"a file used as a folder", "a.png/a.png", missing},
        {"a folder in place of a file", "sub", failure(std::errc::is_a_directory),
         [](Place& p) { p.directory("film/sub"); }},
        {"a FIFO in place of a file", "pipe", failure(std::errc::operation_not_supported),
         [](Place& p) { p.fifo("film/pipe"); }},
        {"a FIFO used as a folder", "pipe/a.png", missing, [](Place& p) { p.fifo("film/pipe"); }},
        {"a socket in place of a file", "socket", failure(std::errc::operation_not_supported),
         [](Place& p) { p.socket("film/socket"); }},
        {"a file that may not be read", "b.png", failure(std::errc::permission_denied),
         [](Place& p) { p.file("film/b.png"), p.allow("film/b.png", 0); }},
        {"a folder that may be searched but not listed", "sub/a.png", accepted,
         [](Place& p) { p.file("film/sub/a.png"), p.allow("film/sub", 0111); }},
        {"a project that may be searched but not listed", "a.png", accepted,
         [](Place& p) { p.allow("film", 0111); }},
        {"a folder that may be listed but not searched", "sub/a.png", failure(std::errc::permission_denied),
         [](Place& p) { p.file("film/sub/a.png"), p.allow("film/sub", 0444); }},
        {"a project that may not be searched", "a.png", failure(std::errc::permission_denied),
         [](Place& p) { p.allow("film", 0444); }},
        {"a hard link to a file outside", "hard.png", accepted,
         [](Place& p) {
             std::filesystem::create_hard_link(p.area / "outside/a.png", p.area / "film/hard.png");
         }},
    };
}

std::vector<Layout> linkLayouts() {
    return {
        {"a link to another file", "l", accepted, [](Place& p) { p.link("film/l", "a.png"); }},
        {"a link to a folder", "l/b.png", accepted,
         [](Place& p) { p.file("film/sub/b.png"), p.link("film/l", "sub"); }},
        {"a link down and up again", "sub/l", accepted, [](Place& p) { p.link("film/sub/l", "../a.png"); }},
        {"a link to a file outside", "l", unsafe, [](Place& p) { p.link("film/l", "../outside/a.png"); }},
        {"a link to a folder outside", "l/a.png", unsafe, [](Place& p) { p.link("film/l", "../outside"); }},
        {"an absolute link to a file outside", "l", unsafe,
         [](Place& p) { p.link("film/l", p.area / "outside/a.png"); }},
        {"an absolute link that ends inside", "l", accepted,
         [](Place& p) { p.link("film/l", p.area / "film/a.png"); }},
        {"an absolute link to a folder inside", "l/b.png", accepted,
         [](Place& p) { p.file("film/sub/b.png"), p.link("film/l", p.area / "film/sub"); }},
        {"a relative link that climbs out and ends inside", "l", accepted,
         [](Place& p) { p.link("film/l", "../film/a.png"); }},
        {"a link out and another one back in", "l/back", accepted,
         [](Place& p) { p.link("film/l", "../outside"), p.link("outside/back", "../film/a.png"); }},
        {"a link to a link outside that leads back in", "l", accepted,
         [](Place& p) {
             p.link("film/l", "../outside/back"), p.link("outside/back", p.area / "film/a.png");
         }},
        {"a link out, back in, and out again", "l", unsafe,
         [](Place& p) {
             p.link("film/l", "../outside/back"), p.link("outside/back", "../film/again");
             p.link("film/again", "../outside/a.png");
         }},
        {"a link to the project itself", "l", unsafe, [](Place& p) { p.link("film/l", "."); }},
        {"a file through a link to the project itself", "l/a.png", accepted,
         [](Place& p) { p.link("film/l", "."); }},
        {"a link to the folder above", "l", unsafe, [](Place& p) { p.link("film/l", ".."); }},
        {"back in through a link to the folder above", "l/film/a.png", accepted,
         [](Place& p) { p.link("film/l", ".."); }},
        {"a link with a slash at its end, to a file", "l", missing,
         [](Place& p) { p.link("film/l", "a.png/"); }},
        {"a slash after a link to a file", "l/", missing, [](Place& p) { p.link("film/l", "a.png"); }},
        {"a link to nothing, inside", "l", missing, [](Place& p) { p.link("film/l", "nothing"); }},
        {"a link to nothing, outside", "l", unsafe, [](Place& p) { p.link("film/l", "../outside/nothing"); }},
        {"a link to nothing, out and back in", "l", missing,
         [](Place& p) { p.link("film/l", "../outside/../film/nothing"); }},
        {"a link that climbs out of a folder that is not there", "l", unsafe,
         [](Place& p) { p.link("film/l", "nothing/../../outside/a.png"); }},
        {"a folder that is not there, behind a link out", "l/sub/a.png", unsafe,
         [](Place& p) { p.link("film/l", "../outside"); }},
        {"a link to itself", "l", missing, [](Place& p) { p.link("film/l", "l"); }},
        {"two links to each other", "l", missing,
         [](Place& p) { p.link("film/l", "m"), p.link("film/m", "l"); }},
        {"a loop outside", "l", unsafe,
         [](Place& p) { p.link("film/l", "../outside/l"), p.link("outside/l", "l"); }},
        {"40 links, as many as are followed", "l40", accepted, [](Place& p) { p.chain("film/l", 40); }},
        {"41 links", "l41", missing, [](Place& p) { p.chain("film/l", 41); }},
        {"41 links one after the other on one way", repeated("l/", 41) + "a.png", missing,
         [](Place& p) { p.link("film/l", "."); }},
        {"a folder outside whose name begins like the project's", "l", unsafe,
         [](Place& p) { p.file("film-other/a.png"), p.link("film/l", "../film-other/a.png"); }},
        {"a folder outside whose name is the beginning of the project's", "l", unsafe,
         [](Place& p) { p.file("fil/a.png"), p.link("film/l", "../fil/a.png"); }},
        {"a link to a device", "l", unsafe, [](Place& p) { p.link("film/l", "/dev/zero"); }},
        {"a link to what the system tells of this process", "l", unsafe,
         [](Place& p) { p.link("film/l", "/proc/self/environ"); }},
        {"a link to an open file of this process", "l", unsafe,
         [](Place& p) { p.link("film/l", "/proc/self/fd/0"); }},
        {"a link to the top of the file system", "l", unsafe, [](Place& p) { p.link("film/l", "/"); }},
        {"a link to a folder outside that may not be searched", "l/a.png", unsafe,
         [](Place& p) {
             p.file("locked/a.png"), p.allow("locked", 0);
             p.link("film/l", "../locked");
         }},
        {"a link to a FIFO", "l", failure(std::errc::operation_not_supported),
         [](Place& p) { p.fifo("film/pipe"), p.link("film/l", "pipe"); }},
        {"a FIFO outside", "l", unsafe,
         [](Place& p) { p.fifo("outside/pipe"), p.link("film/l", "../outside/pipe"); }},
    };
}

std::vector<Layout> rootLayouts() {
    return {
        {"the project given through a link", "a.png", accepted,
         [](Place& p) { p.link("given", "film"), p.root = p.area / "given"; }},
        {"the project given through a link, with a link back to its real place", "l", accepted,
         [](Place& p) {
             p.link("given", "film"), p.root = p.area / "given";
             p.link("film/l", p.area / "film/a.png");
         }},
        {"the project given through a link, with a link back through it", "l", accepted,
         [](Place& p) {
             p.link("given", "film"), p.root = p.area / "given";
             p.link("film/l", p.area / "given/a.png");
         }},
        {"a link beside the link that the project was given through", "l", unsafe,
         [](Place& p) {
             p.link("given/here", "../film"), p.root = p.area / "given/here";
             p.file("given/a.png"), p.link("film/l", p.area / "given/a.png");
         }},
        {"a link above the project", "a.png", accepted,
         [](Place& p) {
             p.file("real/parent/film/a.png"), p.link("above", "real/parent");
             p.root = p.area / "above/film";
         }},
        {"the project's folder with a slash at the end", "a.png", accepted,
         [](Place& p) { p.root = p.area / "film/"; }},
        {"the project's folder with dots", "a.png", accepted,
         [](Place& p) { p.root = p.area / "film/./../film/."; }},
        {"the project's folder is not there", "a.png", missing,
         [](Place& p) { p.root = p.area / "nothing"; }},
        {"the project's folder is a file", "a.png", missing,
         [](Place& p) { p.root = p.area / "film/a.png"; }},
        {"the project's folder is a link to itself", "a.png", missing,
         [](Place& p) { p.link("loop", "loop"), p.root = p.area / "loop"; }},
    };
}

} // namespace

const std::vector<Layout>& containmentLayouts() {
    static const std::vector<Layout> all = [] {
        std::vector<Layout> layouts;
        for (const std::vector<Layout>& part : {textLayouts(), fileLayouts(), linkLayouts(), rootLayouts()})
            layouts.insert(layouts.end(), part.begin(), part.end());
        return layouts;
    }();
    return all;
}

} // namespace kinovane::test
