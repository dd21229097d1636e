// SPDX-License-Identifier: Apache-2.0

#include "common/json/value_builder.hpp"

#include <utility>

#include "common/json/number.hpp"

namespace kinovane::json {

namespace {

/// How a message names what a value should have been.
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

/// A number as a message quotes it.
std::string quotedNumber(std::string_view text) {
    constexpr std::size_t longest = 40;
    return text.size() <= longest ? std::string(text) : std::string(text.substr(0, longest)) + "…";
}

} // namespace

void ValueBuilder::storeNumber(const Destination& destination, std::string_view text) {
    if (destination.shape->kind == Kind::integer) {
        const IntegerValue integer = integerValue(text);
        if (integer.fault == NumberFault::none)
            store(destination, integer.value);
        else
            addFailure(Failure::mismatch(
                integer.fault == NumberFault::fraction ? "an integer" : "an integer that fits 64 bits",
                quotedNumber(text)));
    } else if (destination.shape->kind == Kind::real) {
        if (const std::optional<double> real = realValue(text))
            store(destination, *real);
        else
            addFailure(Failure::mismatch("a number that fits a double", quotedNumber(text)));
    } else {
        addMismatch(destination, "a number");
    }
}

void ValueBuilder::beginListOrMap(Frame& frame) {
    frame.number = listsAndMaps_++;
    if (results_ == nullptr)
        return;
    if (frame.shape->kind == Kind::map) {
        if (const auto key = results_->uncheckedKeys.find(frame.number); key != results_->uncheckedKeys.end())
            frame.needExtra().keyFailures.ignoreBefore(key->second);
    } else if (frame.target != nullptr) {
        if (const std::size_t length = results_->lengthOf(frame.number); length != 0) {
            frame.shape->reserve(frame.target, length);
            frame.capacity = length;
        }
    }
}

void ValueBuilder::beginForm(Frame& frame) {
    Extra& extra = frame.needExtra();
    extra.record = frame.target;
    extra.form = frame.shape->makeForm();
    frame.target = extra.form.get();
}

void ValueBuilder::beginEntry(Frame& frame, std::string_view key) {
    Extra& extra = frame.needExtra();
    extra.entryKey.assign(key);
    extra.keyFailures.remove(key);
    frame.entryValue = nullptr;
    if (frame.target != nullptr && memory_.allocate(frame.shape->elementSize) &&
        memory_.allocateText(key.size()))
        frame.entryValue = frame.shape->insert(frame.target, key);
}

void ValueBuilder::recordLength(const Frame& frame) {
    const std::size_t length = frame.current + 1; // noRow + 1 is 0
    if (length > CheckResults::longList)
        results_->addLongList(frame.number, length);
}

bool ValueBuilder::grow(Frame& frame) {
    const std::size_t capacity = frame.capacity == 0 ? 1 : 2 * frame.capacity;
    const std::size_t size = frame.shape->elementSize;
    if (!memory_.allocate(capacity * size))
        return false;
    // The elements are moved to new memory, and until then both are allocated.
    frame.shape->reserve(frame.target, capacity);
    memory_.release(frame.capacity * size);
    frame.capacity = capacity;
    return true;
}

void ValueBuilder::addMismatch(const Destination& destination, std::string_view found) {
    addFailure(Failure::mismatch(nameOf(destination.shape->kind), found));
}

void ValueBuilder::addFailure(Failure&& failure) {
    if (frames_.empty())
        failure_ = std::move(failure);
    else
        frames_.back().addFailure(std::move(failure), memory_.keyFailureLimit());
}

} // namespace kinovane::json
