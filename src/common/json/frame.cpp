// SPDX-License-Identifier: Apache-2.0

#include "common/json/frame.hpp"

#include <bit>
#include <utility>

namespace kinovane::json {

void Frame::note(Failure&& failure, std::size_t keyFailureLimit) {
    switch (shape->kind) {
    case Kind::record:
        failure.within(shape->rows[current].key);
        needExtra().rowFailures.insert_or_assign(current, std::move(failure));
        break;
    case Kind::map:
        failure.within(needExtra().entryKey);
        extra->keyFailures.note(extra->entryKey, std::move(failure), keyFailureLimit);
        break;
    default:
        // The elements of a list come in order and none comes again, so no element after it is looked at.
        failure.within(current);
        needExtra().rowFailures.emplace(current, std::move(failure));
    }
}

std::optional<Failure> Frame::firstFailure() {
    if (shape->kind == Kind::map)
        return extra ? extra->keyFailures.takeFirst(number) : std::nullopt;
    const std::uint64_t missing = shape->requiredRows & ~seen;
    const bool wrong = holdsWrongRow();
    if (missing == 0) { // As in every list, which may have any number of elements.
        if (!wrong)
            return std::nullopt;
        return std::move(extra->rowFailures.begin()->second);
    }
    const auto firstMissing = static_cast<std::size_t>(std::countr_zero(missing)); // 64 when there is none
    if (wrong && extra->rowFailures.begin()->first < firstMissing)
        return std::move(extra->rowFailures.begin()->second);
    Failure failure = Failure::missing();
    failure.within(shape->rows[firstMissing].key);
    return failure;
}

} // namespace kinovane::json
