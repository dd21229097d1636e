// SPDX-License-Identifier: Apache-2.0

#include "handoff/asset_identity.hpp"

#include <span>
#include <string_view>

#include "common/json/writer.hpp"

namespace kinovane {

namespace {

/// The record that is hashed, as compact JSON, to make the identifier.
struct AssetIdentity {
    std::string_view path;
    std::string_view sha256;
};

} // namespace

template <>
struct json::Table<AssetIdentity> {
    static constexpr std::tuple fields{
        field("path", &AssetIdentity::path),
        field("sha256", &AssetIdentity::sha256),
    };
};

namespace {

std::string identityOf(const FilmArtifact& artifact) {
    return json::encode(AssetIdentity{artifact.path, artifact.sha256}, JSONFormat::compact);
}

} // namespace

void requireAssetID(const FilmArtifact& artifact) { static_cast<void>(identityOf(artifact)); }

std::string stableAssetID(const FilmArtifact& artifact, Digest& digest) {
    constexpr std::size_t digitsKept = 20;
    const std::string identity = identityOf(artifact);
    digest.restart();
    digest.update(std::as_bytes(std::span(identity)));
    return std::string("film_asset_").append(digest.finish(), Digest::prefixLength, digitsKept);
}

} // namespace kinovane
