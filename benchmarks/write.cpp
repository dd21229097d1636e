// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>

#include <kinovane/handoff.hpp>

#include "film_data.hpp"
#include "peer_atomic.hpp"
#include "peer_json.hpp"
#include "report.hpp"

/// Figure 8: the time to write the manifest of a long film, to tmpfs, so that no disk is measured.
namespace kinovane::benchmarks {

void measureWrite(const Settings& settings, Report& report) {
    if (!settings.wants(8))
        return;
    const DataFolder folder("/dev/shm/kinovane-benchmark", settings.keep);
    const VistrelHandoff handoff = longHandoff(settings.size(20'000), settings.size(40'000));
    const std::string text = encodeJSON(handoff, JSONFormat::pretty);
    const std::filesystem::path file = folder.path() / "handoff.json";
    report.add(compare(
        {8, "write, 20,000 shots and 40,000 assets, tmpfs"}, settings.rounds(15),
        timed([&] { VistrelHandoffBuilder::write(handoff, file); }),
        {{"nlohmann::json, dump(2), fwrite, fsync", 4.5, timed([&] { writeWithNlohmann(handoff, file); })},
         {"ready text stored atomically and hashed", 0.5,
          timed([&] { storeAtomicallyAndHash(text, file); })}}));
}

} // namespace kinovane::benchmarks
