// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <memory>
#include <utility>
#include <version>
#if defined(__cpp_lib_jthread)
#include <stop_token>
#endif

#include <kinovane/export.hpp>

/// How an application asks a running operation to end early. These types are the library's own because not
/// every standard library that it supports has `<stop_token>`; where there is one, a std::stop_token is
/// accepted wherever a StopToken is.
namespace kinovane {

namespace detail {

/// What a source and its tokens share: whether a stop was requested, and who waits for it.
class KINOVANE_EXPORT StopState {
  public:
    StopState();
    StopState(const StopState&) = delete;
    StopState& operator=(const StopState&) = delete;
    ~StopState();

    /// Whether this was the first request.
    bool request() noexcept;
    bool requested() const noexcept;

    /// Called once when a stop is requested, on the requesting thread; it must neither throw nor use this
    /// state. Called at once when the stop was requested before.
    class KINOVANE_EXPORT Listener {
      public:
        virtual void onStop() noexcept = 0;

      protected:
        ~Listener() = default;
    };
    void add(Listener& listener);
    /// The listener is not called any more once this has returned.
    void remove(Listener& listener) noexcept;

  private:
    struct Members;
    std::unique_ptr<Members> members_;
};

} // namespace detail

/// Tells an operation whether it was asked to stop. Copies belong to the same source. The default value never
/// asks. May be used from several threads at once.
class KINOVANE_EXPORT StopToken {
  public:
    StopToken() noexcept = default;

#if defined(__cpp_lib_jthread)
    /// Asks as soon as `token` does. Throws std::bad_alloc. A template, so that a source that converts no
    /// token does not compile what follows one.
    template <std::convertible_to<std::stop_token> Token>
    StopToken(Token token) // NOLINT(google-explicit-constructor): accepted wherever this is
        : state_(follow<detail::StopState>(std::move(token))) {}
#endif

    /// Whether a stop was requested.
    bool stopRequested() const noexcept { return state_ && state_->requested(); }

    /// Whether a stop was requested or may still be.
    bool stopPossible() const noexcept { return state_ != nullptr; }

    /// For the library.
    const std::shared_ptr<detail::StopState>& state() const noexcept { return state_; }

  private:
    friend class StopSource;
    explicit StopToken(std::shared_ptr<detail::StopState> state) noexcept : state_(std::move(state)) {}

#if defined(__cpp_lib_jthread)
    /// A state that follows a token of the standard library; null if that one never asks.
    template <class State>
    static std::shared_ptr<State> follow(std::stop_token token) {
        struct Request {
            State* state;
            void operator()() const noexcept { state->request(); }
        };
        struct Link {
            explicit Link(std::stop_token followed) : callback(std::move(followed), Request{&state}) {}
            State state;
            std::stop_callback<Request> callback;
        };
        if (!token.stop_possible())
            return nullptr;
        const auto link = std::make_shared<Link>(std::move(token));
        return {link, &link->state};
    }
#endif

    std::shared_ptr<detail::StopState> state_;
};

/// Asks operations to stop. Copies share one state. May be used from several threads at once.
class KINOVANE_EXPORT StopSource {
  public:
    /// Throws std::bad_alloc.
    StopSource();

    /// Asks every operation that has a token of this source. Returns whether this was the first request. Does
    /// not wait for the operations to end: their tasks tell when they have.
    bool requestStop() noexcept { return state_->request(); }

    /// Whether a stop was requested.
    bool stopRequested() const noexcept { return state_->requested(); }

    /// A token for an operation. It may outlive this source.
    StopToken token() const noexcept { return StopToken(state_); }

  private:
    std::shared_ptr<detail::StopState> state_;
};

} // namespace kinovane
