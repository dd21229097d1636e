// SPDX-License-Identifier: Apache-2.0

#include "common/json/receiver.hpp"

#include <utility>

namespace kinovane::json {

std::string_view nameOf(Kind kind) {
    switch (kind) {
    case Kind::text:
        return "a string";
    case Kind::integer:
        return "an integer";
    case Kind::real:
        return "a number";
    case Kind::boolean:
        return "true or false";
    case Kind::list:
        return "a list";
    case Kind::map:
    case Kind::record:
        break;
    }
    return "an object";
}

std::string quotedNumber(std::string_view text) {
    constexpr std::size_t longest = 40;
    return text.size() <= longest ? std::string(text) : std::string(text.substr(0, longest)) + "…";
}

void Receiver::beginNumbered(Frame& frame) {
    frame.number = numbered_++;
    if (survey_ == nullptr)
        return;
    if (frame.shape->kind == Kind::map) {
        if (const auto key = survey_->firstKeys.find(frame.number); key != survey_->firstKeys.end())
            frame.needExtra().keyFailures.startAt(key->second);
    } else if (frame.target != nullptr) {
        if (const std::size_t length = survey_->lengthOf(frame.number); length != 0) {
            frame.shape->reserve(frame.target, length);
            frame.capacity = length;
        }
    }
}

void Receiver::beginForm(Frame& frame) {
    Extra& extra = frame.needExtra();
    extra.record = frame.target;
    extra.form = frame.shape->makeForm();
    frame.target = extra.form.get();
}

void Receiver::endSurveyed(const Frame& frame) {
    const std::size_t length = frame.current + 1; // noRow + 1 is 0
    if (length > Survey::longList)
        survey_->addLongList(frame.number, length);
}

void Receiver::openEntry(Frame& frame, std::string_view key) {
    Extra& extra = frame.needExtra();
    extra.entryKey.assign(key);
    extra.keyFailures.forget(key);
    frame.entryValue = nullptr;
    if (frame.target != nullptr && storage_.take(frame.shape->elementSize) && storage_.takeText(key.size()))
        frame.entryValue = frame.shape->enter(frame.target, key);
}

bool Receiver::grow(Frame& frame) {
    const std::size_t capacity = frame.capacity == 0 ? 1 : 2 * frame.capacity;
    const std::size_t size = frame.shape->elementSize;
    if (!storage_.take(capacity * size))
        return false;
    // The elements are moved to new memory, and until then both are allocated.
    frame.shape->reserve(frame.target, capacity);
    storage_.giveBack(frame.capacity * size);
    frame.capacity = capacity;
    return true;
}

void Receiver::mismatch(const Place& place, std::string_view found) {
    note(Failure::mismatch(nameOf(place.shape->kind), found));
}

void Receiver::note(Failure&& failure) {
    if (frames_.empty())
        failure_ = std::move(failure);
    else
        frames_.back().note(std::move(failure), storage_.keyFailureLimit());
}

} // namespace kinovane::json
