// SPDX-License-Identifier: Apache-2.0

#include "simulators/vistrel_film.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

VistrelFilm::VistrelFilm() {
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(sampleFilm() / "run.json");
    VistrelHandoffBuilder::write(
        VistrelHandoffBuilder::build(snapshot, sampleFilm().string(), "2026-03-01T14:05:09Z"), manifest);
    document = boost::json::parse(contentOf(manifest));
}

void VistrelFilm::save() const { directory.write("manifest.json", boost::json::serialize(document)); }

ProcessResult VistrelFilm::run(std::vector<std::string> arguments) const {
    try {
        return FilmToolClient(programPath("vistrel"))
            .run(std::move(arguments), {{"VISTREL_LIBRARY", library.string()}})
            .get();
    } catch (const FilmToolError& error) {
        if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
            return failed->result;
        throw;
    }
}

ProcessResult VistrelFilm::check() const {
    return run({"production", "import-film", manifest, "--dry-run", "--output", "json"});
}

ProcessResult VistrelFilm::import() const {
    return run({"production", "import-film", manifest, "--output", "json"});
}

std::map<std::string, std::string> treeOf(const fs::path& directory) {
    std::map<std::string, std::string> tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory))
        tree[entry.path().lexically_relative(directory).string()] =
            entry.is_directory() ? "a directory" : contentOf(entry.path());
    return tree;
}

} // namespace kinovane::test
