// SPDX-License-Identifier: Apache-2.0

#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

#include <kinovane/workspace.hpp>

#include "common/files/location.hpp"
#include "workspace/brief_form.hpp"
#include "workspace/document_file.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"
#include "workspace/treatment_table.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view supportedContract = "quexrun/film-project.v1";

std::string reasonOf(const std::error_code& code) {
    if (code == std::errc::operation_not_supported)
        return "this is not an ordinary file";
    if (code == std::errc::device_or_resource_busy)
        return "it changes while it is read";
    return code.message();
}

/// Reads one document. Every failure becomes an invalidProject whose description begins with the file's name.
template <class Document>
Document read(const fs::path& location) {
    const auto invalid = [&](const std::string& why) {
        return FilmProjectError(FilmProjectError::invalidProject{location.filename().string() + ": " + why});
    };
    try {
        return decodeDocument<Document>(location);
    } catch (const JSONDecodingError& error) {
        throw invalid(error.what());
    } catch (const std::system_error& error) {
        throw invalid(reasonOf(error.code()));
    } catch (const std::bad_alloc&) {
        throw invalid("there is not enough memory to read it");
    }
}

template <class Document>
std::optional<Document> readIfPresent(const fs::path& location) {
    if (!mayExist(location))
        return std::nullopt;
    return read<Document>(location);
}

/// The standardized location. One that cannot be standardized is used as given, and is then reported missing.
fs::path standardizedOrAsGiven(const fs::path& location) {
    try {
        return standardized(location);
    } catch (const fs::filesystem_error&) {
        return location;
    }
}

} // namespace

FilmWorkspaceSnapshot FilmProjectLoader::load(const fs::path& runManifest) {
    const fs::path manifest = standardizedOrAsGiven(runManifest);
    if (!mayExist(manifest))
        throw FilmProjectError(FilmProjectError::missingRunManifest{manifest});

    const fs::path root = manifest.parent_path();
    const fs::path projectLocation = root / "film-project.json";
    if (!mayExist(projectLocation))
        throw FilmProjectError(FilmProjectError::missingProject{projectLocation});

    auto project = read<FilmProject>(projectLocation);
    if (project.contractVersion != supportedContract)
        throw FilmProjectError(FilmProjectError::unsupportedContract{project.contractVersion});

    return {root, manifest, std::move(project),
            readIfPresent<FilmProductionPlan>(root / "production-plan.json"),
            readIfPresent<FilmTreatment>(root / "treatment.json")};
}

} // namespace kinovane
