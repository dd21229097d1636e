// SPDX-License-Identifier: Apache-2.0

#include "film_data.hpp"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <random>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace kinovane::benchmarks {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20U;

std::string digits(std::size_t number) {
    const std::string text = std::to_string(number);
    return std::string(6 - std::min<std::size_t>(text.size(), 6), '0') + text;
}

/// A random text in the form of a digest.
std::string randomDigest(std::mt19937_64& random) {
    std::string text = "sha256:";
    for (int index = 0; index < 64; ++index)
        text += "0123456789abcdef"[random() % 16];
    return text;
}

void writeMedia(const fs::path& file, std::size_t size, std::vector<char>& block, std::size_t number) {
    std::memcpy(block.data(), &number, sizeof number); // Every file has different bytes.
    std::ofstream out(file, std::ios::binary);
    for (std::size_t left = size; left > 0;) {
        const std::size_t count = std::min(left, block.size());
        out.write(block.data(), static_cast<std::streamsize>(count));
        left -= count;
    }
    if (!out.flush())
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace

DataFolder::DataFolder(fs::path path, bool keep) : path_(std::move(path)), keep_(keep) {
    fs::remove_all(path_);
    fs::create_directories(path_);
}

DataFolder::~DataFolder() {
    std::error_code ignored;
    if (!keep_)
        fs::remove_all(path_, ignored);
}

MediaFilm makeMediaFilm(const fs::path& root, const std::vector<std::size_t>& sizes) {
    std::mt19937_64 random(1);
    std::vector<char> block(blockSize);
    std::generate(block.begin(), block.end(), [&] { return static_cast<char>(random()); });

    MediaFilm film;
    film.snapshot.root = root;
    film.snapshot.runManifest = root / "run.json";
    film.snapshot.project.contractVersion = "quexrun/film-project.v1";
    film.snapshot.productionPlan.emplace();
    fs::create_directories(root / "clips");
    for (const std::size_t size : sizes) {
        const std::string path = "clips/shot-" + digits(film.files.size()) + ".mp4";
        film.files.push_back(root / path);
        writeMedia(film.files.back(), size, block, film.files.size());
        film.snapshot.project.artifacts.push_back({.bytes = static_cast<std::int64_t>(size),
                                                   .contentType = "video/mp4",
                                                   .createdAt = "2026-03-14T09:30:00Z",
                                                   .kind = "shot-clip",
                                                   .path = path,
                                                   .sha256 = VistrelHandoffBuilder::sha256(film.files.back()),
                                                   .source = "camera"});
        film.bytes += size;
    }
    if (const int directory = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); directory >= 0) {
        ::syncfs(directory);
        ::close(directory);
    }
    return film;
}

std::string projectDocument(std::size_t bytes) {
    std::mt19937_64 random(2);
    std::string text = R"({
  "contractVersion": "quexrun/film-project.v1",
  "projectId": "film-long",
  "title": "A Very Long Film",
  "idea": "On the foggy island of Brèmes an old lamplighter cannot wake the seventh lamp of the quay.",
  "createdAt": "2026-03-14T09:30:00Z",
  "updatedAt": "2026-03-14T11:50:00Z",
  "status": "completed",
  "phase": "delivered",
  "brief": {
    "target": {"audience": "Families", "durationSeconds": 18.5, "language": "en", "rating": "G"},
    "creative": {"genre": "Fable", "mustHaves": ["Seven lamps", "A ferry that answers"]},
    "usage": "Sample film",
    "openQuestions": ["Should the captain be seen in a longer version?"]
  },
  "approvals": {
    "treatment": {"status": "approved", "summary": "Fable in seven beats", "approvedBy": "Irène Vasseur"}
  },
  "departments": [
    {"id": "d1", "role": "writer", "phase": "story", "dependsOn": ["d0"], "synthesis": true, "status": "completed", "attempts": 1}
  ],
  "shots": [{"id": "shot-1", "status": "accepted", "take": 1, "selectedCandidate": 2}],
  "reviewRequests": [
    {"shotId": "shot-1", "note": "Slower", "status": "applied", "recordedAt": "2026-03-14T10:00:00Z", "archivedTake": 1}
  ],
  "jobs": [{"id": "job-1", "kind": "video", "status": "completed", "shotId": "shot-1", "error": null}],
  "production": {
    "mode": "local", "takesPerShot": 2, "generateScore": true, "inspectGeneratedMedia": true,
    "maxParallelAgents": 2, "piTimeoutSeconds": 600, "mediaTimeoutSeconds": 1200,
    "models": {"imageMaster": "a", "imageShot": "b", "video": "c", "visionInspector": "d",
               "speechAsr": "e", "speechTts": "f", "sfx": "g", "music": "h"}
  },
  "artifacts": [)";
    const char* separator = "\n";
    for (std::size_t number = 0; text.size() < bytes; ++number) {
        text += separator;
        text += "    {\n      \"bytes\": " + std::to_string(random() % 500'000'000);
        text += ",\n      \"contentType\": \"video/mp4\",\n      \"createdAt\": \"2026-03-14T11:46:30Z\"";
        text +=
            ",\n      \"kind\": \"shot-clip\",\n      \"path\": \"clips/shot-" + digits(number) + ".mp4\"";
        text += ",\n      \"sha256\": \"" + randomDigest(random) + "\",\n      \"source\": \"camera\"\n    }";
        separator = ",\n";
    }
    return text + R"(
  ],
  "proof": {"creation": true, "clips": true, "assembly": true, "dialogue": true, "sound": true, "captions": true,
            "inspection": true, "review": true, "humanReview": false, "delivery": false},
  "issues": [{"code": "late", "message": "The last note rings on.", "blocking": false}]
}
)";
}

VistrelHandoff longHandoff(std::size_t shots, std::size_t assets) {
    std::mt19937_64 random(3);
    VistrelHandoff handoff;
    handoff.contractVersion = "quexrun/film-vistrel-handoff.v1";
    handoff.exportedAt = "2026-03-14T12:00:00Z";
    handoff.source = {"film-long", "/films/long", "run.json", "quexrun/film-project.v1", handoff.exportedAt};
    handoff.project.title = "A Very Long Film";
    handoff.project.fps = 24;
    handoff.project.aspectRatio = "16:9";
    handoff.cast.push_back({"girl", "Lou", "A girl with a bicycle", "Yellow raincoat", "bright", 7});
    handoff.locations.push_back({"quay", "The quay", "Seven lamps in the fog", "Waves, far bells", 8});
    for (std::size_t number = 0; number < shots; ++number) {
        const double third = static_cast<double>(random() % 1000) / 300;
        VistrelHandoffShot shot;
        shot.id = "shot-" + digits(number);
        shot.order = static_cast<std::int64_t>(number);
        shot.purpose = "The girl lends the lamplighter the lamp of her bicycle.";
        shot.prompt =
            "Slow push in on the quay at Brèmes, fog, a \"seventh\" lamp that stays dark, paper theatre";
        shot.framePrompt = "The quay at night, seven lamps, one dark, fog rolling in from the sea";
        shot.timelineStartMilliseconds = static_cast<std::int64_t>(number) * 2500;
        shot.durationMilliseconds = 2500;
        shot.characterIds = {"girl", "lamplighter"};
        shot.locationId = "quay";
        shot.transition = "cut";
        shot.take = 1;
        shot.seed = static_cast<std::int64_t>(random() >> 1U);
        shot.keyframeAssetId = "film_asset_" + randomDigest(random).substr(7, 20);
        shot.clipAssetId = "film_asset_" + randomDigest(random).substr(7, 20);
        shot.dialogue.push_back({"girl", "Take mine — it always works.", third, "softly"});
        shot.soundEffects.push_back({"a bell over water", third / 2, 1.25, -18.5, 4711});
        handoff.shots.push_back(std::move(shot));
    }
    for (std::size_t number = 0; number < assets; ++number)
        handoff.assets.push_back({"film_asset_" + randomDigest(random).substr(7, 20), "shot-clip",
                                  "clips/shot-" + digits(number) + ".mp4", randomDigest(random),
                                  static_cast<std::int64_t>(random() % 500'000'000), "video/mp4", "camera"});
    return handoff;
}

} // namespace kinovane::benchmarks
