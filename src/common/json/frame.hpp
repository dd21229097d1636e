// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/json/failure.hpp"
#include "common/json/key_failures.hpp"
#include "common/json/shape.hpp"

namespace kinovane::json {

/// What few frames need: those of maps, of records that are read through a form, and of what is wrong.
struct Extra {
    std::map<std::size_t, Failure> rowFailures; ///< Of a record's members, or the first of a list's elements.
    KeyFailures keyFailures;                    ///< Of a map's values.
    std::string entryKey;                       ///< Of the value of a map that is being read.
    std::shared_ptr<void> form;
    void* record = nullptr; ///< What the form is for.
};

/// An object or a list that is being read.
struct Frame {
    const Shape* shape = nullptr;
    void* target = nullptr;     ///< Null when nothing is to be stored.
    std::size_t current = 0;    ///< The row, or the element, that is being read.
    std::uint64_t seen = 0;     ///< The rows met so far.
    std::size_t number = 0;     ///< Of a list or a map: how many began before it.
    std::size_t capacity = 0;   ///< Of a list.
    void* entryValue = nullptr; ///< Where the value of a map that is being read belongs.
    std::unique_ptr<Extra> extra;

    Extra& needExtra() {
        if (!extra)
            extra = std::make_unique<Extra>();
        return *extra;
    }

    /// Takes the failure of the member, element or value that is being read. `keyFailureLimit` is how many
    /// bytes the failures of a map's values may take.
    void note(Failure&& failure, std::size_t keyFailureLimit);
    void forgetRow(std::size_t row) {
        if (extra)
            extra->rowFailures.erase(row);
    }
    /// Whether a row, or an element, is wrong.
    bool holdsWrongRow() const { return extra && !extra->rowFailures.empty(); }
    std::optional<Failure> firstFailure();
};

} // namespace kinovane::json
