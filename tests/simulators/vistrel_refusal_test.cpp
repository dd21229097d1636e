// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <span>

#include <gtest/gtest.h>

#include "simulators/vistrel_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
namespace bj = boost::json;

/// The sample film's manifest with one thing changed, and the importer's message.
struct Refusal {
    std::string_view sentence;
    std::function<void(bj::value&)> change;
    std::string expected; ///< Without the line's end.
};

bj::object& at(bj::value& manifest, const char* list, std::size_t index) {
    return manifest.at(list).as_array().at(index).as_object();
}

/// Gives an asset another path and digest, and the id that they make.
void rename(bj::object& asset, const std::string& path) {
    asset["relativePath"] = path;
    const std::string named = "{\"path\":" + bj::serialize(asset["relativePath"]) +
                              ",\"sha256\":" + bj::serialize(asset["sha256"]) + "}";
    asset["id"] =
        "film_asset_" + VistrelHandoffBuilder::sha256(std::as_bytes(std::span(named))).substr(7, 20);
}

/// The first asset of the sample film's manifest, as it should be.
bj::object firstAsset() { return VistrelFilm().document.at("assets").as_array().at(0).as_object(); }

std::string textOf(const bj::object& record, const char* key) {
    return std::string(record.at(key).as_string());
}

void expectRefusals(const std::vector<Refusal>& rows) {
    VistrelFilm film;
    const bj::value sound = film.document;
    for (const Refusal& row : rows) {
        SCOPED_TRACE(row.sentence);
        film.document = sound;
        row.change(film.document);
        film.save();
        for (const ProcessResult& result : {film.check(), film.import()}) {
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_EQ(result.stderr, row.expected + "\n");
            EXPECT_EQ(result.stdout, "");
        }
        for (const std::string& name :
             fs::exists(film.library) ? namesIn(film.library) : std::vector<std::string>())
            EXPECT_TRUE(name.ends_with(".lock")) << name << " is left behind";
    }
    film.document = sound;
    film.save();
    EXPECT_EQ(film.check().exitCode, 0) << "without a change it is sound";
}

TEST(VistrelRefusal, NamesAWrongKey) {
    expectRefusals({
        {"another version", [](bj::value& m) { m.at("contractVersion") = "quexrun/film-vistrel-handoff.v2"; },
         "contractVersion: \"quexrun/film-vistrel-handoff.v2\" is not \"quexrun/film-vistrel-handoff.v1\", "
         "the only "
         "version that can be imported"},
        {"no version", [](bj::value& m) { m.as_object().erase("contractVersion"); },
         "contractVersion is missing"},
        {"no list of shots", [](bj::value& m) { m.as_object().erase("shots"); }, "shots is missing"},
        {"a shot without a take", [](bj::value& m) { at(m, "shots", 0).erase("take"); },
         "shots[0].take is missing"},
        {"a title that is a number", [](bj::value& m) { m.at("project").at("title") = 7; },
         "project.title: expected text, found a whole number"},
        {"a speed with a fraction", [](bj::value& m) { m.at("project").at("fps") = 23.976; },
         "project.fps: expected a whole number, found a number with a fraction or an exponent"},
        {"a title that is null", [](bj::value& m) { m.at("project").at("title") = nullptr; },
         "project.title: expected text, found null"},
        {"a list that is null", [](bj::value& m) { m.at("cast") = nullptr; },
         "cast: expected a list, found null"},
        {"a theme that is a number", [](bj::value& m) { m.at("project").at("theme") = 7; },
         "project.theme: expected text, found a whole number"},
        {"a width that is text", [](bj::value& m) { m.at("project").at("width") = "64"; },
         "project.width: expected a whole number, found text"},
        {"a size beyond 64 bits", [](bj::value& m) { at(m, "assets", 3)["bytes"] = UINT64_MAX; },
         "assets[3].bytes: expected a whole number, found a whole number that is too large"},
        {"a proof that is a word", [](bj::value& m) { m.at("proof").at("sound") = "yes"; },
         "proof.sound: expected true or false, found text"},
        {"a list that is an object", [](bj::value& m) { m.at("cast") = bj::object(); },
         "cast: expected a list, found an object"},
        {"a source that is a list", [](bj::value& m) { m.at("source") = bj::array(); },
         "source: expected an object, found a list"},
        {"a character that is no text",
         [](bj::value& m) { at(m, "shots", 4)["characterIds"].as_array()[1] = true; },
         "shots[4].characterIds[1]: expected text, found true or false"},
        {"a line without its delivery",
         [](bj::value& m) { at(m, "shots", 0)["dialogue"].as_array()[0].as_object().erase("delivery"); },
         "shots[0].dialogue[0].delivery is missing"},
        {"a level that is a word",
         [](bj::value& m) { at(m, "shots", 5)["soundEffects"].as_array()[1].at("levelDb") = "loud"; },
         "shots[5].soundEffects[1].levelDb: expected a number, found text"},
    });
}

TEST(VistrelRefusal, NamesAWrongHeader) {
    expectRefusals({
        {"another run manifest", [](bj::value& m) { m.at("source").at("runManifest") = "runs/run.json"; },
         "source.runManifest: expected \"run.json\", found \"runs/run.json\""},
        {"a negative duration", [](bj::value& m) { m.at("project").at("durationMilliseconds") = -1; },
         "project.durationMilliseconds: a film cannot last -1 ms"},
        {"a relative project folder", [](bj::value& m) { m.at("source").at("projectRoot") = "films/lamp"; },
         "source.projectRoot: \"films/lamp\" is not an absolute path"},
        {"a project folder that is not there",
         [](bj::value& m) { m.at("source").at("projectRoot") = "/films/lamp"; },
         "cannot find the project folder \"/films/lamp\": No such file or directory"},
        {"a project folder that is a file",
         [](bj::value& m) { m.at("source").at("projectRoot") = "/etc/passwd"; },
         "source.projectRoot: \"/etc/passwd\" is not a folder"},
        {"a project folder with a NUL character",
         [](bj::value& m) { m.at("source").at("projectRoot") = bj::string_view("/tmp\0x", 6); },
         "source.projectRoot: \"/tmp\\u0000x\" has a NUL character"},
    });
}

TEST(VistrelRefusal, NamesAWrongAsset) {
    const std::string zeros(64, '0');
    const std::string id = textOf(firstAsset(), "id");
    bj::object withoutPath = firstAsset();
    rename(withoutPath, "");
    expectRefusals({
        {"an empty path", [](bj::value& m) { rename(at(m, "assets", 0), ""); },
         "asset \"" + textOf(withoutPath, "id") + "\": the path is empty"},
        {"an absolute path", [](bj::value& m) { rename(at(m, "assets", 0), "/etc/passwd"); },
         "asset \"/etc/passwd\": the path is not relative to the project folder"},
        {"a parent component", [](bj::value& m) { rename(at(m, "assets", 0), "cast/../cast/aurelien.png"); },
         "asset \"cast/../cast/aurelien.png\": the path has a \"..\" component"},
        {"a NUL character", [](bj::value& m) { rename(at(m, "assets", 0), std::string("a\0b", 3)); },
         "asset \"a\\u0000b\": the path has a NUL character"},
        {"two assets with one path", [](bj::value& m) { at(m, "assets", 1) = at(m, "assets", 0); },
         "asset \"cast/aurelien.png\": two assets have this path"},
        {"two assets with one id", [](bj::value& m) { at(m, "assets", 1)["id"] = at(m, "assets", 0)["id"]; },
         "asset \"cast/noor.png\": another asset has the same id \"" + id + "\""},
        {"a kind that is not imported", [](bj::value& m) { at(m, "assets", 0)["kind"] = "archived-take"; },
         "asset \"cast/aurelien.png\": the kind \"archived-take\" is not one that can be imported"},
        {"a negative size", [](bj::value& m) { at(m, "assets", 0)["bytes"] = -5; },
         "asset \"cast/aurelien.png\": a file cannot have -5 bytes"},
        {"a digest in capitals", [&](bj::value& m) { at(m, "assets", 0)["sha256"] = "SHA256:" + zeros; },
         "asset \"cast/aurelien.png\": the digest \"SHA256:" + zeros +
             "\" is not \"sha256:\" followed by 64 lowercase hexadecimal digits"},
        {"an id that is too short", [](bj::value& m) { at(m, "assets", 0)["id"] = "film_asset_12"; },
         "asset \"cast/aurelien.png\": the id \"film_asset_12\" is not \"film_asset_\" followed by 20 "
         "lowercase "
         "hexadecimal digits"},
        {"an id of something else",
         [](bj::value& m) { at(m, "assets", 0)["id"] = "film_asset_00000000000000000000"; },
         "asset \"cast/aurelien.png\": the id is \"film_asset_00000000000000000000\", but its path and "
         "digest make "
         "\"" +
             id + "\""},
    });
}

TEST(VistrelRefusal, NamesAWrongShot) {
    expectRefusals({
        {"two shots with one id", [](bj::value& m) { at(m, "shots", 1)["id"] = "shot-01"; },
         "shot \"shot-01\": two shots have this id"},
        {"a gap in the order", [](bj::value& m) { at(m, "shots", 1)["order"] = 2; },
         "shot \"shot-02\": its order is 2, but its position in the film is 1"},
        {"an overlap", [](bj::value& m) { at(m, "shots", 1)["timelineStartMilliseconds"] = 2999; },
         "shot \"shot-02\": starts at 2999 ms, but the shots before it end at 3000 ms"},
        {"a shot that goes back", [](bj::value& m) { at(m, "shots", 0)["durationMilliseconds"] = -1; },
         "shot \"shot-01\": cannot last -1 ms"},
        {"a total duration that overflows",
         [](bj::value& m) { at(m, "shots", 6)["durationMilliseconds"] = INT64_MAX; },
         "shot \"shot-07\": makes the film longer than can be counted in milliseconds"},
        {"a key frame that is not there",
         [](bj::value& m) { at(m, "shots", 0)["keyframeAssetId"] = "film_asset_0"; },
         "shot \"shot-01\": its key frame \"film_asset_0\" is not among the assets"},
        {"another shot's clip",
         [](bj::value& m) { at(m, "shots", 0)["clipAssetId"] = at(m, "shots", 1)["clipAssetId"]; },
         "shot \"shot-01\": its clip is \"clips/shot-02.mp4\", but should be \"clips/shot-01.mp4\""},
    });
}

TEST(VistrelRefusal, NamesAWrongFile) {
    const TemporaryDirectory copy;
    fs::copy(sampleFilm(), copy / "film", fs::copy_options::recursive);
    copy.write("outside.txt", "outside");
    fs::create_symlink("../outside.txt", copy / "film/link.txt");
    const std::string root = copy / "film";
    const std::string zeros = "sha256:" + std::string(64, '0');
    const auto moved = [&](const std::function<void(bj::object&)>& change) {
        return [root, change](bj::value& m) {
            m.at("source").at("projectRoot") = root;
            bj::object& asset = at(m, "assets", 0);
            change(asset);
            rename(asset, textOf(asset, "relativePath"));
        };
    };
    expectRefusals({
        {"a file that is not there", moved([](bj::object& a) { a["relativePath"] = "cast/nobody.png"; }),
         "asset \"cast/nobody.png\": the file cannot be found: No such file or directory"},
        {"a file that lies outside", moved([](bj::object& a) { a["relativePath"] = "link.txt"; }),
         "asset \"link.txt\": leads out of the project folder to \"" + (copy / "outside.txt").string() +
             "\""},
        {"a folder", moved([](bj::object& a) { a["relativePath"] = "cast"; }),
         "asset \"cast\": is not a regular file"},
        {"the project folder", moved([](bj::object& a) { a["relativePath"] = "./"; }),
         "asset \"./\": is the project folder itself"},
        {"another size", moved([](bj::object& a) { a["bytes"] = 27279; }),
         "asset \"cast/aurelien.png\": has 27280 bytes, but the manifest states 27279"},
        {"another digest", moved([&](bj::object& a) { a["sha256"] = zeros; }),
         "asset \"cast/aurelien.png\": has the digest " + textOf(firstAsset(), "sha256") +
             ", but the manifest states " + zeros},
    });
}

TEST(VistrelRefusal, NamesAnInvalidManifest) {
    const VistrelFilm film;
    struct Row {
        std::string_view sentence;
        std::string content;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"nothing", "", "the manifest is not valid JSON: incomplete JSON in line 1"},
        {"a word", "{\n\"a\":\nhello}", "the manifest is not valid JSON: syntax error in line 3"},
        {"trailing text", "{}\n{}", "the manifest is not valid JSON: extra data in line 2"},
        {"a list", "[]", "the manifest: expected an object, found a list"},
        {"nested too deep", std::string(65, '[') + std::string(65, ']'),
         "the manifest is not valid JSON: too deep in line 1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        film.directory.write("manifest.json", row.content);
        EXPECT_EQ(film.check().stderr, row.expected + "\n");
        EXPECT_EQ(film.import().exitCode, 1);
    }
    fs::remove(film.manifest);
    const std::string name = '"' + film.manifest.string() + '"';
    EXPECT_EQ(film.check().stderr, "cannot open " + name + ": No such file or directory\n");
    fs::create_directory(film.manifest);
    EXPECT_EQ(film.check().stderr, name + " is not a regular file\n");
    fs::remove(film.manifest);
    film.directory.write("manifest.json", "");
    fs::resize_file(film.manifest, (std::uintmax_t{256} << 20U) + 1);
    EXPECT_EQ(film.check().stderr, name + " is larger than the 256 MiB that a manifest may have\n");
}

} // namespace
} // namespace kinovane::test
