// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

const std::string digestOfABC = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
const std::string otherDigest(64, '0');
const std::string twoSound = "All 2 files are sound: 6 B in {TIME}.\n2 of 2 recorded files examined.\n";

/// A film with the sound files a.png and "b\n.png".
class SmallFilm : public WorkspaceMaker {
  public:
    SmallFilm() {
        add("poster", "a.png", "abc");
        add("thumbnail", "b\n.png", "abc");
        writeDocuments(*this);
    }

    Outcome verify(const Arguments& options) const {
        Arguments arguments{"verify", snapshot.root.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return withoutTimes(runCommandLineTool(std::move(arguments)));
    }
};

const std::string checksums = digestOfABC + "  a.png\n\\" + digestOfABC + "  b\\n.png\n";

TEST(VerifyChecksums, WritesAListOfTheSoundFiles) {
    const SmallFilm film;
    const TemporaryDirectory directory;
    const std::string list = (directory / "list").string();
    EXPECT_EQ(film.verify({"--write-checksums", list}),
              (Outcome{0, twoSound, "Wrote the digests of 2 files to " + list + "\n"}));
    EXPECT_EQ(contentOf(list), checksums);
    EXPECT_EQ(film.verify({"--checksums", list}),
              (Outcome{0, twoSound + "All 2 files in " + list + " are as listed.\n", ""}));

    film.directory.write("a.png", "abd");
    EXPECT_EQ(film.verify({"--write-checksums", list, "--quiet"}).status, 4);
    EXPECT_EQ(contentOf(list), "\\" + digestOfABC + "  b\\n.png\n");
    EXPECT_EQ(namesIn(directory.path()), Arguments{"list"});
}

TEST(VerifyChecksums, WritesTheListToStandardOutput) {
    const SmallFilm film;
    EXPECT_EQ(film.verify({"--write-checksums", "-"}), (Outcome{0, checksums, twoSound}));
}

TEST(VerifyChecksums, ComparesWithAList) {
    struct Row {
        std::string sentence;
        std::string list;
        int status;
        std::string out; ///< "{LIST}" is the path of the list.
    };
    const std::vector<Row> rows{
        {"equal digests", checksums, 0, twoSound + "All 2 files in {LIST} are as listed.\n"},
        {"another form of a path", digestOfABC + " *./a.png\r\n", 0,
         twoSound + "The file in {LIST} is as listed.\n"},
        {"another digest", otherDigest + "  a.png\n" + digestOfABC + "  notes.txt\n", 4,
         "differs     a.png  the list and the project have different digests\n" + twoSound +
             "1 of 2 files in {LIST} is not as listed.\n"},
        {"a file that is not recorded", digestOfABC + "  notes.txt\n", 0,
         twoSound + "The file in {LIST} is as listed.\n"},
        {"a changed file that is not recorded", otherDigest + "  notes.txt\n", 4,
         "changed     notes.txt  its content is not what was listed\n" + twoSound +
             "1 of 1 file in {LIST} is not as listed.\n"},
        {"a missing file", digestOfABC + "  none.txt\n", 4,
         "missing     none.txt\n" + twoSound + "1 of 1 file in {LIST} is not as listed.\n"},
        {"a path that leads out", digestOfABC + "  /etc/hostname\n", 4,
         "misplaced   /etc/hostname  the recorded path is absolute\n" + twoSound +
             "1 of 1 file in {LIST} is not as listed.\n"},
        {"a folder", digestOfABC + "  folder\n", 6,
         "unreadable  folder  is a folder, not a file\n" + twoSound +
             "1 of 1 file in {LIST} is not as listed.\n"},
        {"no files", "", 0, twoSound + "All 0 files in {LIST} are as listed.\n"},
    };
    for (const Row& row : rows) {
        const SmallFilm film;
        film.directory.write("notes.txt", "abc");
        film.directory.write("folder/file", "");
        const TemporaryDirectory directory;
        const std::string list = directory.write("list", row.list).string();
        EXPECT_EQ(film.verify({"--checksums", list}),
                  (Outcome{row.status, replaced(row.out, "{LIST}", list), ""}))
            << row.sentence;
    }
}

TEST(VerifyChecksums, AreComparedInJSON) {
    const SmallFilm film;
    const TemporaryDirectory directory;
    const std::string list =
        directory.write("list", otherDigest + "  a.png\n" + otherDigest + "  none.txt\n").string();
    const Outcome outcome = film.verify({"--checksums", list, "--json"});
    EXPECT_EQ(outcome.status, 4);
    const boost::json::value document = boost::json::parse(outcome.out);
    EXPECT_EQ(document.at("films").at(0).at("checksums"),
              (boost::json::value{{"file", list},
                                  {"listed", 2},
                                  {"differing", boost::json::array{"a.png"}},
                                  {"unrecorded", boost::json::array{boost::json::object{
                                                     {"path", "none.txt"},
                                                     {"state", "missing"},
                                                     {"listedDigest", "sha256:" + otherDigest},
                                                     {"reason", nullptr}}}}}))
        << outcome;
}

TEST(VerifyChecksums, RefuseWhatCannotBeDone) {
    const SmallFilm film;
    const TemporaryDirectory directory;
    const std::string root = film.snapshot.root.string();
    const std::string list = directory.write("list", "# comment\n").string();
    const std::string link = (directory / "link").string();
    fs::create_symlink(film.directory / "a.png", link);
    const std::string own =
        ": this is one of the film's own files, and is not replaced. Next: name another file\n";
    struct Row {
        std::string sentence;
        Arguments options;
        int status;
        std::string message;
    };
    const std::vector<Row> rows{
        {"a recorded file", {"--write-checksums", root + "/a.png"}, 2, root + "/a.png" + own},
        {"a document", {"--write-checksums", root + "/treatment.json"}, 2, root + "/treatment.json" + own},
        {"the handoff manifest",
         {"--write-checksums", root + "/vistrel-handoff.json"},
         2,
         root + "/vistrel-handoff.json" + own},
        {"a link to a recorded file", {"--write-checksums", link}, 2, link + own},
        {"the list itself",
         {"--checksums", list, "--write-checksums", list},
         6,
         list + ":1: not 64 hexadecimal digits, a space, a second space or \"*\", and a path\n"},
        {"a list that does not exist",
         {"--checksums", list + "-none"},
         6,
         list + "-none: No such file or directory\n"},
        {"a folder that does not exist",
         {"--write-checksums", list + "-none/list", "--quiet"},
         6,
         list + "-none: No such file or directory\n"},
        {"JSON and a list on standard output", {"--write-checksums", "-", "--json"}, 2, ""},
        {"two films",
         {root, "--checksums", list},
         2,
         "a list of checksums belongs to one film; name only one\n"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = film.verify(row.options);
        EXPECT_EQ(outcome.status, row.status) << row.sentence;
        if (!row.message.empty())
            EXPECT_EQ(outcome.err, "kinovane: " + row.message) << row.sentence;
    }
    EXPECT_EQ(contentOf(film.directory / "a.png"), "abc");
}

TEST(VerifyUnrecorded, ListsTheOtherFiles) {
    const SmallFilm film;
    EXPECT_EQ(film.verify({"--unrecorded"}),
              (Outcome{0, twoSound + "Every file in the film's folder is recorded.\n", ""}));
    film.directory.write("notes/a\x1b.txt", "12345");
    fs::create_symlink("a.png", film.directory / "link.png");
    EXPECT_EQ(film.verify({"--unrecorded"}),
              (Outcome{0,
                       "unrecorded  link.png  a link to a.png\n"
                       "unrecorded  $'notes/a\\x1b.txt'  5 B\n" +
                           twoSound + "2 files in the film's folder are not recorded: 5 B.\n",
                       ""}));
    const boost::json::value document = boost::json::parse(film.verify({"--unrecorded", "--json"}).out);
    EXPECT_EQ(
        document.at("films").at(0).at("unrecorded"),
        (boost::json::array{
            boost::json::object{{"path", "link.png"}, {"bytes", nullptr}, {"remark", "a link to a.png"}},
            boost::json::object{{"path", "notes/a\x1b.txt"}, {"bytes", 5}, {"remark", nullptr}}}));
}

} // namespace

} // namespace kinovane::test
