// SPDX-License-Identifier: Apache-2.0

#include <atomic>
#include <optional>
#include <thread>
#include <vector>
#include <version>

#ifdef __cpp_lib_jthread
#include <stop_token>
#endif

#include <gtest/gtest.h>

#include <kinovane/stop.hpp>

namespace kinovane::test {
namespace {

class CountingListener final : public detail::StopState::Listener {
  public:
    void onStop() noexcept override { ++calls; }
    std::atomic<int> calls = 0;
};

TEST(StopToken, NeverAsksByDefault) {
    const StopToken token;
    EXPECT_FALSE(token.stopRequested());
    EXPECT_FALSE(token.stopPossible());
}

TEST(StopToken, AsksOnceItsSourceDoes) {
    StopSource source;
    const StopToken token = source.token();
    EXPECT_TRUE(token.stopPossible());
    EXPECT_FALSE(token.stopRequested());
    EXPECT_TRUE(source.requestStop());
    EXPECT_FALSE(source.requestStop());
    EXPECT_TRUE(token.stopRequested());
    EXPECT_TRUE(StopSource(source).stopRequested());
}

#ifdef __cpp_lib_jthread
TEST(StopToken, FollowsATokenOfTheStandardLibrary) {
    EXPECT_FALSE(StopToken(std::stop_token()).stopPossible());
    std::optional<std::stop_source> source(std::in_place);
    const StopToken token = source->get_token();
    const StopToken copy = token;
    EXPECT_FALSE(copy.stopRequested());
    source->request_stop();
    EXPECT_TRUE(copy.stopRequested());
    EXPECT_TRUE(StopToken(source->get_token()).stopRequested());
    source.reset();
    EXPECT_TRUE(token.stopRequested());
}
#endif

TEST(StopToken, OutlivesItsSource) {
    StopToken token;
    {
        StopSource source;
        token = source.token();
    }
    EXPECT_FALSE(token.stopRequested());
}

TEST(StopState, CallsAListenerOnce) {
    detail::StopState state;
    CountingListener before;
    CountingListener removed;
    state.add(before);
    state.add(removed);
    state.remove(removed);
    state.request();
    state.request();
    CountingListener after;
    state.add(after);
    state.remove(after);
    EXPECT_EQ(before.calls, 1);
    EXPECT_EQ(removed.calls, 0);
    EXPECT_EQ(after.calls, 1);
}

TEST(StopState, CallsNoListenerThatWasRemoved) {
    for (int round = 0; round < 2000; ++round) {
        StopSource source;
        std::thread stopper([&] { source.requestStop(); });
        {
            CountingListener listener;
            const StopToken token = source.token();
            token.state()->add(listener);
            token.state()->remove(listener);
            const int calls = listener.calls;
            EXPECT_LE(calls, 1);
        } // A call from here on would be found by the sanitizers.
        stopper.join();
    }
}

} // namespace
} // namespace kinovane::test
