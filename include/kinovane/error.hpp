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

/// The base class of FilmProjectError, FilmToolError and VistrelHandoffError.
namespace kinovane {

namespace detail {
template <class Value, class Case>
inline constexpr bool isCaseOf = std::same_as<Value, Case>;
template <class Value, class... Cases>
inline constexpr bool isCaseOf<Value, std::variant<Cases...>> =
    std::same_as<Value, std::variant<Cases...>> || (std::same_as<Value, Cases> || ...);
} // namespace detail

/// An exception that is one of several named cases, each with a payload. `Cases` contains one struct for each
/// case, `using Case = std::variant<…>` with these structs in declared order, and
/// `static std::string describe(const Case&)`.
///
/// To throw:   `throw FilmProjectError(FilmProjectError::missingProject{location});`
/// To examine: `if (const auto* missing = std::get_if<FilmProjectError::missingProject>(&error.value()))`
///
/// Two errors are equal when they are the same case with equal payloads. Copies share one immutable state:
/// copying never throws, moving is copying, and an error may be read from several threads at once.
template <class Cases>
class KINOVANE_EXPORT CaseError : public std::exception, public Cases {
  public:
    /// The variant of the cases.
    using Case = typename Cases::Case;

    /// Converts from any of the cases, and from the variant.
    template <class Value>
        requires detail::isCaseOf<std::remove_cvref_t<Value>, Case>
    CaseError(Value&& value) // NOLINT(google-explicit-constructor): each case converts to the error
        : CaseError(Case(std::forward<Value>(value)), Described{}) {}

    CaseError(const CaseError&) noexcept = default;
    CaseError& operator=(const CaseError&) noexcept = default;
    ~CaseError() override = default;

    /// The case and its payload; valid as long as this error or a copy of it.
    const Case& value() const noexcept { return state_->value; }

    /// The message for users, in English. The same text as `what`.
    std::string errorDescription() const { return state_->description; }

    /// The same text as `errorDescription`.
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
