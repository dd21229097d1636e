// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include <kinovane/export.hpp>

/// The one shape of this library's error classes.
namespace kinovane {

namespace detail {
template <class Value, class Case>
inline constexpr bool isCaseOf = std::same_as<Value, Case>;
template <class Value, class... Cases>
inline constexpr bool isCaseOf<Value, std::variant<Cases...>> =
    std::same_as<Value, std::variant<Cases...>> || (std::same_as<Value, Cases> || ...);
} // namespace detail

/// An exception that is one of several named cases, each with its payload. `Cases` holds a struct for every
/// case, `using Case = std::variant<…>` over them in declared order, and `static std::string describe(const
/// Case&)`.
///
/// A case is tested with `std::get_if<Error::someCase>(&error.value())`. Two errors are equal when they are
/// the same case with equal payloads. Copies share one immutable state, so copying never throws and a copy
/// may be read from any thread.
template <class Cases>
class KINOVANE_EXPORT CaseError : public std::exception, public Cases {
  public:
    using Case = typename Cases::Case;

    /// From any case, or from a ready variant of them.
    template <class Value>
        requires detail::isCaseOf<std::remove_cvref_t<Value>, Case>
    CaseError(Value&& value) // NOLINT(google-explicit-constructor): a case is an error wherever one is wanted
        : CaseError(Case(std::forward<Value>(value)), Described{}) {}

    CaseError(const CaseError&) noexcept = default;
    CaseError& operator=(const CaseError&) noexcept = default;
    ~CaseError() override = default;

    const Case& value() const noexcept { return state_->value; }

    /// The text to show to a user.
    std::string errorDescription() const { return state_->description; }

    const char* what() const noexcept override { return state_->description.c_str(); }

    friend bool operator==(const CaseError& left, const CaseError& right) {
        return left.value() == right.value();
    }

  private:
    struct Described {};
    struct State {
        Case value;
        std::string description;
    };

    CaseError(Case&& value, Described /*tag*/) {
        auto description = Cases::describe(value);
        state_ = std::make_shared<const State>(State{std::move(value), std::move(description)});
    }

    std::shared_ptr<const State> state_;
};

} // namespace kinovane
