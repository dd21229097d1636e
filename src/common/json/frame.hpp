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

/// State that few frames need: those of maps, of records that are read through a form, and of values that are
/// wrong.
struct Extra {
    /// Of a record's members, by row, or of a list's first wrong element, by index.
    std::map<std::size_t, Failure> rowFailures;
    /// Of a map's values.
    KeyFailures keyFailures;
    /// The key of the map's entry that is being read.
    std::string entryKey;
    /// The form that is being read, and the record that is made of it.
    std::shared_ptr<void> form;
    void* record = nullptr;
};

/// An object or a list that is being read.
struct Frame {
    const Shape* shape = nullptr;
    void* target = nullptr;     ///< Null when nothing is to be stored.
    std::size_t current = 0;    ///< The row, or the element, that is being read.
    std::uint64_t seen = 0;     ///< The rows whose keys have occurred, one bit each.
    std::size_t number = 0;     ///< Of a list or a map: how many lists and maps began before it.
    std::size_t capacity = 0;   ///< Of a list.
    void* entryValue = nullptr; ///< The address of the map's value that is being read.
    std::unique_ptr<Extra> extra;

    Extra& needExtra() {
        if (!extra)
            extra = std::make_unique<Extra>();
        return *extra;
    }

    /// Adds the failure of the member, element or entry that is being read. `keyFailureLimit` is how many
    /// bytes the failures of a map's values may take.
    void addFailure(Failure&& failure, std::size_t keyFailureLimit);
    void removeFailure(std::size_t row) {
        if (extra)
            extra->rowFailures.erase(row);
    }
    /// Whether a member of a record, or an element of a list, is wrong.
    bool hasRowFailure() const { return extra && !extra->rowFailures.empty(); }
    /// The failure to report, called at the end of the object or list.
    std::optional<Failure> firstFailure();
};

} // namespace kinovane::json
