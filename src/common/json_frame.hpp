#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/json_failure.hpp"
#include "common/json_shape.hpp"

namespace kinovane::json {

/// What a frame has only when it is needed, which is seldom.
struct Extra {
    std::map<std::size_t, Failure> rowFailures; ///< Of a record's members, or of a list's elements.
    std::map<std::string, Failure, std::less<>> keyFailures; ///< Of a map's values.
    std::shared_ptr<void> form;
    void* record = nullptr; ///< What the form is for.
};

/// An object or a list that is being read.
struct Frame {
    const Shape* shape = nullptr;
    void* target = nullptr;
    std::size_t current = 0;    ///< The row, or the element, that is being read.
    std::uint64_t seen = 0;     ///< The rows met so far.
    std::string_view entryKey;  ///< Of the value of a map that is being read.
    void* entryValue = nullptr; ///< Its address.
    std::unique_ptr<Extra> extra;

    Extra& needExtra() {
        if (!extra)
            extra = std::make_unique<Extra>();
        return *extra;
    }

    void note(Failure&& failure);
    void forgetRow(std::size_t row) {
        if (extra)
            extra->rowFailures.erase(row);
    }
    std::optional<Failure> firstFailure();
};

} // namespace kinovane::json
