// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/commands/planned_film.hpp"

namespace kinovane::test {

namespace {

TEST(FilmCommands, ProduceAFilm) {
    const PlannedFilm film;
    const std::string advanceText = "Continuing the production with " + film.tool + "\n";
    const std::string continueText =
        "\nThe production can continue.\nNext: kinovane advance " + film.quotedFolder() + "\n";
    const auto approved = [&](const std::string& gate) {
        return Outcome{0,
                       "  Status    waiting-for-approval → in-production\n"
                       "  Approval  " +
                           gate + ": requested → approved, by Ana\n" + continueText,
                       "Approving \"" + gate + "\" with " + film.tool + "\n{\"ok\":true,\"gate\":\"" + gate +
                           "\",\"status\":\"approved\"}\n"};
    };

    EXPECT_EQ(film({"approve", "--by", "Ana"}), approved("plan"));
    EXPECT_EQ(film({"advance"}),
              (Outcome{0,
                       "  Phase     plan → frames\n"
                       "  Status    in-production → waiting-for-approval\n"
                       "  Approval  frames: pending → requested\n"
                       "  Shots     shot-01, shot-02, shot-03: planned → framed, take 1\n"
                       "  Files     7 new: 2×cast-master, 2×location-master, 3×shot-keyframe\n"
                       "  Proof     complete: creation\n" +
                           waitingText(film, "frames", "One key frame for each shot"),
                       advanceText +
                           R"({"ok":true,"phases":["frames"],"status":"waiting-for-approval",)"
                           R"("nextGate":"frames"})" +
                           "\n"}));
    EXPECT_EQ(film.run({"approve", "frames", film.folder, "--by", "Ana"}), approved("frames"));
    EXPECT_EQ(
        film({"advance", "--quiet"}),
        (Outcome{
            0,
            "  Phase     frames → rough-cut\n"
            "  Status    in-production → waiting-for-approval\n"
            "  Approval  rough-cut: pending → requested\n"
            "  Shots     shot-01, shot-02, shot-03: framed, take 1 → accepted, take 1\n"
            "  Files     22 new: caption-receipt, 2×dialogue, dialogue-qc, edit-block, edit-block-receipt,\n"
            "            3×inspection-frame, media-inspection, rough-cut, score, 3×shot-clip, "
            "3×sound-effect,\n"
            "            sound-qc, subtitle-srt, subtitle-vtt, take-selection\n"
            "  Proof     complete: clips, assembly, dialogue, sound, captions, inspection\n" +
                waitingText(film, "rough-cut", "The film with all shots and sounds in place"),
            ""}));

    EXPECT_EQ(
        film.run({"reroll", "shot-02", film.folder, "--note", "It's dark"}),
        (Outcome{
            0,
            "  Phase     rough-cut → plan\n"
            "  Status    waiting-for-approval → in-production\n"
            "  Approval  rough-cut: requested → pending\n"
            "  Shots     shot-02: accepted, take 1 → new-take, take 1\n"
            "  Files     2 new: 2×archived-take\n"
            "  Files     10 removed: edit-block, edit-block-receipt, 3×inspection-frame, media-inspection,\n"
            "            rough-cut, shot-clip, shot-keyframe, take-selection\n"
            "  Issue     BLOCKING The shot shot-02 waits for a new take.\n"
            "  Proof     to be done again: creation, clips, assembly, inspection\n"
            "\n"
            "The shot shot-02 waits for a new take.\n"
            "Next: kinovane advance " +
                film.quotedFolder() + "\nOr: kinovane recover " + film.quotedFolder() + "\n",
            "Requesting another take of \"shot-02\" with " + film.tool +
                "\nTake 1 of shot-02 has been put aside. Run the film to make the next one.\n"}));
    EXPECT_EQ(film({"advance", "--quiet"}).status, 0);
    EXPECT_EQ(film({"approve", "--by", "Ana"}), approved("rough-cut"));
    EXPECT_EQ(film({"advance"}).status, 0);
    EXPECT_EQ(film({"approve", "--by", "Ana"}), approved("delivery"));
    EXPECT_EQ(film({"advance"}),
              (Outcome{0,
                       "  Phase   delivery → done\n"
                       "  Status  in-production → completed\n"
                       "  Files   4 new: delivery, delivery-master, human-review, production-readiness\n"
                       "  Proof   complete: human review, delivery\n"
                       "\n"
                       "The film is complete.\n"
                       "Next: kinovane verify " +
                           film.quotedFolder() + "\nThen: kinovane publish " + film.quotedFolder() + "\n",
                       advanceText + "{\"ok\":true,\"phases\":[\"done\"],\"status\":\"completed\"}\n"}));
    EXPECT_EQ(film({"recover"}).out, "Nothing changed.\n\nThe film is complete.\nNext: kinovane verify " +
                                         film.quotedFolder() + "\nThen: kinovane publish " +
                                         film.quotedFolder() + "\n");

    const Outcome exported = film({"export"});
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(exported.err, "Exporting the film with " + film.tool + "\n");
    EXPECT_TRUE(
        exported.out.starts_with("  Manifest  " + film.folder + "/vistrel-handoff.json\n  Shots     3\n"))
        << exported;
    EXPECT_EQ(film({"verify"}).status, 2) << "the option --film-tool is not one of verify";
    EXPECT_EQ(runCommandLineTool({"verify", film.folder}).status, 0);

    EXPECT_EQ(
        film({"review"}).out,
        "  Files  2 new: creative-review, technical-review\n"
        "\n"
        "A review note waits for “shot-01”: Stay on the face until the line “Is it still there?” is over.\n"
        "Next: kinovane reroll shot-01 " +
            film.quotedFolder() +
            " --note 'Stay on the face until the line “Is it still there?” is over.'\n"
            "Or: kinovane publish " +
            film.quotedFolder() + "\n");
}

TEST(FilmCommands, PlanAFilm) {
    const TemporaryDirectory directory;
    const std::string folder = (directory / "a 'film'").string();
    const std::string tool = programPath("film");
    const std::vector<std::string> arguments{
        "plan",        "An idea", "--title", "T",     "--duration", "9",          "--folder", folder,
        "--film-tool", tool,      "--pi",    "my-pi", "--provider", "a provider", "--model",  "a model"};
    EXPECT_EQ(
        runCommandLineTool(arguments),
        (Outcome{0, folder + "/run.json\nNext: kinovane status '" + replaced(folder, "'", "'\\''") + "'\n",
                 "Planning the film with " + tool + "\n"}));
    const std::string log = contentOf(folder + "/film-tool-log.jsonl");
    EXPECT_NE(log.find(R"("piCommand":"my-pi","piProvider":"a provider","piModel":"a model")"),
              std::string::npos)
        << log;
    EXPECT_EQ(runCommandLineTool(arguments),
              (Outcome{5, "",
                       "Planning the film with " + tool + "\nThe folder \"" + folder +
                           "\" already holds a film.\nkinovane: film exited 1.\n"}));
}

TEST(FilmCommands, PrintJSON) {
    const PlannedFilm film;
    const Outcome planned =
        runCommandLineTool({"plan", "An idea", "--title", "T", "--duration", "9", "--folder",
                            film.folder + "2", "--film-tool", film.tool, "--json"});
    EXPECT_EQ(
        planned,
        (Outcome{
            0,
            R"({"version":1,"outcome":"done","runManifest":")" + film.folder +
                R"(2/run.json","next":{"reason":"The film is planned.","commands":[["kinovane","status",")" +
                film.folder + "2\"]]}}\n",
            ""}));

    const Outcome approved = film({"approve", "--by", "Ana", "--json"});
    EXPECT_EQ(approved.status, 0);
    EXPECT_EQ(approved.err, "");
    EXPECT_EQ(boost::json::parse(approved.out), boost::json::parse(R"({
        "version": 1, "outcome": "done",
        "changes": {
          "phase": null, "status": {"before": "waiting-for-approval", "after": "in-production"},
          "approvals": [{"id": "plan",
            "before": {"status": "requested", "summary": "The story in three shots",
                       "requestedAt": "2026-03-01T14:05:09Z"},
            "after": {"status": "approved", "summary": "The story in three shots",
                      "requestedAt": "2026-03-01T14:05:09Z", "approvedAt": "2026-03-01T14:05:09Z",
                      "approvedBy": "Ana", "note": ""}}],
          "shots": [], "plannedShots": [], "artifacts": [], "issues": [], "proofSteps": []},
        "next": {"reason": "The production can continue.",
                 "commands": [["kinovane", "advance", ")" + film.folder +
                                                                   "\"]]}}"))
        << approved;

    const Outcome failed = film({"advance", "--json"}, "complain");
    EXPECT_EQ(failed.status, 5);
    EXPECT_EQ(
        failed.err,
        R"({"version":1,"error":{"kind":"program","status":5,"message":"film: The projector has lost a reel. )"
        R"(Try again after the intermission."}})"
        "\n");
    const boost::json::value document = boost::json::parse(failed.out);
    EXPECT_EQ(document.at("outcome"), "failed");
    EXPECT_EQ(document.at("changes").at("artifacts"), boost::json::array());

    const boost::json::value exported = boost::json::parse(film({"export", "--json"}).out);
    EXPECT_EQ(exported.at("receipt").at("manifest"),
              boost::json::string(film.folder + "/vistrel-handoff.json"));
    EXPECT_EQ(exported.at("receipt").at("shots"), 3);
}

TEST(FilmCommands, ApproveInTheNameOfTheUser) {
    const PlannedFilm film;
    EXPECT_EQ(film({"approve", "--note", "--fine"}).status, 0);
    const passwd* user = ::getpwuid(::geteuid()); // NOLINT(concurrency-mt-unsafe)
    ASSERT_NE(user, nullptr);
    const FilmApproval approval =
        FilmProjectLoader::load(film.folder + "/run.json").project.approvals.at("plan");
    EXPECT_EQ(approval.approvedBy, user->pw_name);
    EXPECT_EQ(approval.note, "--fine");
}

} // namespace

} // namespace kinovane::test
