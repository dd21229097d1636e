// SPDX-License-Identifier: Apache-2.0

#include "handoff/artifact_queue.hpp"

#include <cstdint>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::test {
namespace {

FilmArtifact artifactOf(std::int64_t bytes) {
    FilmArtifact artifact;
    artifact.bytes = bytes;
    return artifact;
}

class ArtifactQueueOrder : public testing::Test {
  protected:
    std::vector<FilmArtifact> artifacts{artifactOf(20), artifactOf(30), artifactOf(10), artifactOf(30)};
    const std::vector<const FilmArtifact*> pointers{&artifacts[0], &artifacts[1], &artifacts[2],
                                                    &artifacts[3]};

    /// The indexes that the queue returns until there are no more.
    static std::vector<std::size_t> rest(ArtifactQueue& queue) {
        std::vector<std::size_t> indexes;
        while (const auto turn = queue.next())
            indexes.push_back(turn->index);
        return indexes;
    }
};

using Indexes = std::vector<std::size_t>;

TEST_F(ArtifactQueueOrder, IsThatOfTheListForOneWorker) {
    ArtifactQueue queue(pointers, false);
    EXPECT_EQ(rest(queue), (Indexes{0, 1, 2, 3}));
}

TEST_F(ArtifactQueueOrder, HasTheLargestFirstForSeveralWorkers) {
    ArtifactQueue queue(pointers, true);
    EXPECT_EQ(rest(queue), (Indexes{1, 3, 0, 2}));
}

TEST_F(ArtifactQueueOrder, RepeatsAnArtifactThatWasGivenBack) {
    ArtifactQueue queue(pointers, true);
    queue.addWorker();
    EXPECT_EQ(queue.next()->index, 1U);
    EXPECT_FALSE(queue.giveBack(1));
    EXPECT_EQ(rest(queue), (Indexes{1, 3, 0, 2}));
}

class ArtifactQueueWorker : public ArtifactQueueOrder {};

TEST_F(ArtifactQueueWorker, IsAloneOnlyWhenAllOthersHaveEnded) {
    ArtifactQueue queue(pointers, true);
    queue.addWorker();
    queue.addWorker();
    queue.addWorker();
    EXPECT_FALSE(queue.next()->alone);
    queue.removeWorker();
    EXPECT_FALSE(queue.next()->alone);
    EXPECT_FALSE(queue.giveBack(3)) << "two workers are left";
    EXPECT_FALSE(queue.next()->alone);
    EXPECT_FALSE(queue.giveBack(3)) << "one worker is left";
    EXPECT_TRUE(queue.next()->alone);
    EXPECT_TRUE(queue.giveBack(3));
}

TEST_F(ArtifactQueueWorker, GoesOnWhenTheOthersFoundTheQueueEmpty) {
    ArtifactQueue queue({pointers[0]}, true);
    queue.addWorker();
    const auto turn = queue.next();
    EXPECT_FALSE(turn->alone);
    EXPECT_EQ(queue.next(), std::nullopt) << "the other worker ends";
    EXPECT_TRUE(queue.giveBack(turn->index));
    EXPECT_TRUE(queue.next()->alone);
}

} // namespace
} // namespace kinovane::test
