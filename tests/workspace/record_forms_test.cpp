// SPDX-License-Identifier: Apache-2.0

// Which records of a workspace can be read from JSON, and which can also be written. Checked at compile time.

#include <cstdint>
#include <string>
#include <type_traits>

#include <kinovane/workspace.hpp>

namespace kinovane::test {
namespace {

template <class Record>
concept Encodable = requires(const Record& record) { encodeJSON(record); };
template <class Record>
concept Decodable = requires { decodeJSON<Record>(""); };

template <class Record>
concept ReadableAndWritable = std::is_aggregate_v<Record> && Decodable<Record> && Encodable<Record>;
template <class Record>
concept OnlyReadable = std::is_aggregate_v<Record> && Decodable<Record> && !Encodable<Record>;

static_assert(OnlyReadable<FilmProject>);
static_assert(OnlyReadable<FilmBrief>);

static_assert(ReadableAndWritable<FilmApproval>);
static_assert(ReadableAndWritable<FilmDepartmentTask>);
static_assert(ReadableAndWritable<FilmShotState>);
static_assert(ReadableAndWritable<FilmReviewRequest>);
static_assert(ReadableAndWritable<FilmJob>);
static_assert(ReadableAndWritable<FilmProductionConfiguration>);
static_assert(ReadableAndWritable<FilmModelConfiguration>);
static_assert(ReadableAndWritable<FilmArtifact>);
static_assert(ReadableAndWritable<FilmProof>);
static_assert(ReadableAndWritable<FilmIssue>);
static_assert(ReadableAndWritable<FilmProductionPlan>);
static_assert(ReadableAndWritable<FilmTarget>);
static_assert(ReadableAndWritable<FilmCastMember>);
static_assert(ReadableAndWritable<FilmLocation>);
static_assert(ReadableAndWritable<FilmProductionShot>);
static_assert(ReadableAndWritable<FilmDialogueLine>);
static_assert(ReadableAndWritable<FilmSoundEffect>);
static_assert(ReadableAndWritable<FilmTreatment>);

static_assert(std::is_aggregate_v<FilmWorkspaceSnapshot>);
static_assert(!Decodable<FilmWorkspaceSnapshot> && !Encodable<FilmWorkspaceSnapshot>);
static_assert(!Decodable<std::int64_t> && !Encodable<std::string>);

} // namespace
} // namespace kinovane::test
