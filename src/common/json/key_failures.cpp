// SPDX-License-Identifier: Apache-2.0

#include "common/json/key_failures.hpp"

#include <iterator>
#include <utility>

namespace kinovane::json {

namespace {

/// An estimate of what one failure allocates.
std::size_t sizeOf(std::string_view key, const Failure& failure) {
    constexpr std::size_t node = 256;
    return node + key.size() + failure.path.size() + failure.text.size();
}

} // namespace

void KeyFailures::add(std::string_view key, Failure&& failure, std::size_t limit) {
    remove(key);
    if (key < start_ || (end_ && key >= *end_))
        return;
    size_ += sizeOf(key, failure);
    failures_.emplace(key, std::move(failure));
    while (size_ > limit && failures_.size() > 1) {
        const auto last = std::prev(failures_.end());
        end_ = last->first;
        erase(last);
    }
}

void KeyFailures::remove(std::string_view key) {
    if (const auto found = failures_.find(key); found != failures_.end())
        erase(found);
}

void KeyFailures::erase(Failures::iterator position) {
    size_ -= sizeOf(position->first, position->second);
    failures_.erase(position);
}

std::optional<Failure> KeyFailures::takeFirst(std::size_t map) {
    if (!failures_.empty())
        return std::move(failures_.begin()->second);
    if (!end_)
        return std::nullopt;
    Failure failure{std::string()};
    failure.uncheckedKeys = {map, *end_};
    return failure;
}

} // namespace kinovane::json
