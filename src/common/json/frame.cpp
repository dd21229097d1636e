// SPDX-License-Identifier: Apache-2.0

#include "common/json/frame.hpp"

#include <bit>
#include <utility>

namespace kinovane::json {

void Frame::addFailure(Failure&& failure, std::size_t keyFailureLimit) {
    switch (shape->kind) {
    case Kind::record:
        failure.prependKey(shape->rows[current].key);
        needExtra().rowFailures.insert_or_assign(current, std::move(failure));
        break;
    case Kind::map:
        failure.prependKey(needExtra().entryKey);
        extra->keyFailures.add(extra->entryKey, std::move(failure), keyFailureLimit);
        break;
    default:
        // The first wrong element is the one to report, so the elements after it are not examined.
        failure.prependIndex(current);
        needExtra().rowFailures.emplace(current, std::move(failure));
    }
}

std::optional<Failure> Frame::firstFailure() {
    if (shape->kind == Kind::map)
        return extra ? extra->keyFailures.takeFirst(number) : std::nullopt;
    const std::uint64_t missing = shape->requiredRows & ~seen;
    const bool wrong = hasRowFailure();
    if (missing == 0) { // As in every list, which may have any number of elements.
        if (!wrong)
            return std::nullopt;
        return std::move(extra->rowFailures.begin()->second);
    }
    const auto firstMissing = static_cast<std::size_t>(std::countr_zero(missing)); // 64 when there is none
    if (wrong && extra->rowFailures.begin()->first < firstMissing)
        return std::move(extra->rowFailures.begin()->second);
    Failure failure = Failure::missing();
    failure.prependKey(shape->rows[firstMissing].key);
    return failure;
}

} // namespace kinovane::json
