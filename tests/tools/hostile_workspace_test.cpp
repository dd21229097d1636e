// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// The first character that a terminal must not get, or an empty text.
std::string controlCharacterIn(std::string_view text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        const auto byte = static_cast<unsigned char>(text[position]);
        const unsigned next =
            position + 1 < text.size() ? static_cast<unsigned char>(text[position + 1]) : 0U;
        const bool c0 = (byte < 0x20 && byte != '\n') || byte == 0x7F;
        const bool c1 = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
        const std::string_view bidirectional = "\u202E";
        if (c0 || c1 || text.substr(position).starts_with(bidirectional))
            return std::string(text.substr(position < 40 ? 0 : position - 40, 60));
    }
    return "";
}

void writeText(const fs::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

/// What a hostile document holds wherever text is allowed, as JSON escapes and as characters.
constexpr std::string_view hostileText =
    R"(\u001b]0;title\u0007\u001b[2J\r\b\u0000\u007f\u009b31m\u202egpj.exe\u2066\u2028x\ufdd1)";

/// A sample film in which every text of the project contains the hostile text.
void makeHostile(const fs::path& film) {
    for (const char* document : {"film-project.json", "production-plan.json", "treatment.json"}) {
        std::string text = contentOf(film / document);
        // All values of these keys; keys such as contractVersion have to stay.
        for (const std::string key : {"title", "name", "message", "summary", "approvedBy", "note", "status",
                                      "kind", "purpose", "line", "error", "code", "phase", "idea", "source"})
            for (const std::string& start : {"\"" + key + "\": \"", "\"" + key + "\":\""})
                text = replaced(text, start, start + std::string(hostileText));
        writeText(film / document, text);
    }
}

TEST(HostileWorkspace, PutsNoControlCharacterOnATerminal) {
    const TemporaryDirectory directory;
    const fs::path film = directory / "f\x1b[31m\xE2\x80\xAE\xc2\x9bilm";
    fs::copy(sampleFilm(), film, fs::copy_options::recursive);
    makeHostile(film);
    writeText(film / "clips" / "un\x1brecorded\n\x07.mp4", "x");
    const std::string program = "no\x1b[31msuch";
    const std::vector<Arguments> commands{
        {"status"},
        {"inspect"},
        {"shots"},
        {"artifacts"},
        {"artifacts", "--paths"},
        {"artifacts", "--kind", "no\x1bkind"},
        {"artifacts", "--shot", "no\x1bshot"},
        {"open", "--print"},
        {"open", "no\x1bshot", "--print"},
        {"verify", "--all", "--unrecorded", "--verbose"},
        {"verify", "--checksums", film / "clips" / "un\x1brecorded\n\x07.mp4"},
        {"publish", "--manifest-only", "--verbose"},
        {"publish", "--vistrel", program},
        {"publish", "--output", film / "run.json"},
        {"timeline", "--format", "otio", "--output", directory / "film\x1b.otio"},
        {"timeline", "--format", "edl", "--output", film / "run.json"},
        {"approve", "no\x1bgate"},
        {"advance", "--film-tool", program},
        {"recover", "--film-tool", program},
        {"reroll", "no\x1bshot", "--note", "n", "--film-tool", program},
        {"doctor", "--film", program},
        {"no\x1b[31mcommand"},
        {"verify", "--no\x1b[31moption"},
        {"help", "no\x1b[31mcommand"},
    };
    for (Arguments arguments : commands)
        for (const bool json : {false, true}) {
            const std::string name = arguments.at(0);
            const bool takesFilm = name != "doctor" && name != "help" && name != "no\x1b[31mcommand";
            Arguments all = arguments;
            if (takesFilm)
                all.push_back(film);
            if (json)
                all.emplace_back("--json");
            const Outcome outcome = runCommandLineTool(all);
            EXPECT_GE(outcome.status, 0) << name;
            EXPECT_NE(outcome.status, 1) << name << outcome;
            EXPECT_EQ(controlCharacterIn(outcome.out), "") << name << outcome;
            EXPECT_EQ(controlCharacterIn(outcome.err), "") << name << outcome;
        }
}

TEST(HostileWorkspace, MayHaveATitleOfAMegabyte) {
    const TemporaryDirectory directory;
    const fs::path film = directory / "film";
    fs::copy(sampleFilm(), film, fs::copy_options::recursive);
    const std::string project = contentOf(film / "film-project.json");
    writeText(film / "film-project.json",
              replaced(project, "A Lamp for the Late Ferry", std::string(1'000'000, 'x')));
    for (const std::string command : {"status", "inspect", "shots", "artifacts", "verify"})
        EXPECT_EQ(runCommandLineTool({command, film}).status, 0) << command;
}

TEST(HostileWorkspace, MayLieInAFolderWhoseNameIsNotUTF8) {
    const TemporaryDirectory directory;
    const fs::path film = directory / "caf\xe9";
    fs::copy(sampleFilm(), film, fs::copy_options::recursive);
    for (const std::string command : {"status", "inspect", "shots", "artifacts", "verify"})
        for (const bool json : {false, true}) {
            const Outcome outcome =
                runCommandLineTool(json ? Arguments{command, film, "--json"} : Arguments{command, film});
            // Vistrel cannot be given the path of the folder, which verify and inspect tell.
            EXPECT_EQ(outcome.status, command == "verify" || command == "inspect" ? 4 : 0)
                << command << outcome;
        }
    EXPECT_EQ(runCommandLineTool({"publish", film, "--manifest-only"}).status, 4);
}

} // namespace

} // namespace kinovane::test
