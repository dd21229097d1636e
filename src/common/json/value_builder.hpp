// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/json/check_results.hpp"
#include "common/json/failure.hpp"
#include "common/json/frame.hpp"
#include "common/json/memory_budget.hpp"
#include "common/json/shape.hpp"

namespace kinovane::json {

/// Builds a value of a given shape from the events of a parser, which are called in the order of the
/// document. A wrong value does not stop it: a syntax error further on is reported in its stead, and a later
/// equal key may replace the value. The member functions that most events need are inline, for speed.
class ValueBuilder {
  public:
    /// Without `results`, stores the values in `target` until they take too much memory. With them, only
    /// checks the values and fills the results when `target` is null, and otherwise stores the values by the
    /// results, without a limit.
    ValueBuilder(void* target, const Shape& shape, CheckResults* results)
        : rootTarget_(target), rootShape_(&shape), results_(results) {
        frames_.reserve(16);
        if (results != nullptr)
            memory_ = MemoryBudget::unlimited();
    }

    /// Called before the first event, and again when the document turns out to be larger.
    void setDocumentSize(std::uint64_t size) { memory_.setDocumentSize(size); }

    /// Whether the values take too much memory; there must be no further event then.
    bool memoryExceeded() const { return memory_.exceeded(); }

    /// Whether the events belong to a value of which nothing is used.
    bool skipping() const { return skippedDepth_ != 0; }

    /// The failure to report, once the document has ended.
    const std::optional<Failure>& failure() const { return failure_; }

    void beginObject() {
        begin("an object", [](Kind kind) { return kind == Kind::record || kind == Kind::map; });
    }
    void beginList() {
        begin("a list", [](Kind kind) { return kind == Kind::list; });
    }

    /// Ends the innermost object or list.
    void end() {
        if (skipping()) {
            --skippedDepth_;
            return;
        }
        Frame& frame = frames_.back();
        std::optional<Failure> failure = frame.firstFailure();
        if (frame.shape->kind == Kind::list && results_ != nullptr && frame.target == nullptr)
            recordLength(frame);
        else if (frame.shape->takeForm != nullptr && frame.target != nullptr && !failure)
            frame.shape->takeForm(frame.target, frame.extra->record);
        frames_.pop_back();
        if (failure)
            addFailure(std::move(*failure));
    }

    void key(std::string_view key) {
        if (skipping())
            return;
        Frame& frame = frames_.back();
        if (frame.shape->kind == Kind::map) {
            beginEntry(frame, key);
            return;
        }
        frame.current = rowOf(frame, key);
        if (frame.current == noRow)
            return;
        const std::uint64_t bit = std::uint64_t{1} << frame.current;
        if ((frame.seen & bit) != 0) {
            // The last of two equal keys wins, so nothing of the first may be left.
            if (frame.target != nullptr)
                frame.shape->rows[frame.current].clear(frame.target);
            frame.removeFailure(frame.current);
        }
        frame.seen |= bit;
    }

    void string(std::string_view text) {
        const Destination destination = nextDestination();
        if (destination.shape == nullptr)
            return;
        if (destination.shape->kind != Kind::text)
            addMismatch(destination, "a string");
        else if (destination.address != nullptr && memory_.allocateText(text.size()))
            static_cast<std::string*>(destination.open())->assign(text);
    }

    /// Takes the number's text, because the decoder converts numbers itself.
    void number(std::string_view text) {
        if (const Destination destination = nextDestination(); destination.shape != nullptr)
            storeNumber(destination, text);
    }

    void boolean(bool value) {
        const Destination destination = nextDestination();
        if (destination.shape == nullptr)
            return;
        if (destination.shape->kind == Kind::boolean)
            store(destination, value);
        else
            addMismatch(destination, value ? "true" : "false");
    }

    void null() {
        const Destination destination = nextDestination();
        if (destination.shape == nullptr)
            return;
        if (destination.row == nullptr || destination.row->required)
            addMismatch(destination, "null");
        else if (destination.address != nullptr)
            destination.row->clear(destination.address);
    }

  private:
    /// Where the next value is stored. Without a shape, its key is unknown and the value is not used.
    struct Destination {
        const Shape* shape = nullptr;
        void* address = nullptr;  ///< Null when nothing is to be stored.
        const Row* row = nullptr; ///< Of a record's member; the address is then the record's.

        void* open() const { return row != nullptr && address != nullptr ? row->open(address) : address; }
    };

    static constexpr std::size_t noRow = SIZE_MAX;

    Destination nextDestination() {
        if (skipping())
            return {};
        if (frames_.empty())
            return {rootShape_, rootTarget_, nullptr};
        Frame& frame = frames_.back();
        switch (frame.shape->kind) {
        case Kind::record: {
            if (frame.current == noRow)
                return {};
            const Row& row = frame.shape->rows[frame.current];
            return {row.shape, frame.target, &row};
        }
        case Kind::map:
            return {frame.shape->element, frame.entryValue, nullptr};
        default:
            if (frame.hasRowFailure())
                return {};
            ++frame.current; // Starts at the index before the first.
            return {frame.shape->element, frame.target != nullptr ? append(frame) : nullptr, nullptr};
        }
    }

    template <class Fits>
    void begin(std::string_view found, Fits fits) {
        if (skipping()) {
            ++skippedDepth_;
            return;
        }
        const Destination destination = nextDestination();
        if (destination.shape == nullptr || !fits(destination.shape->kind)) {
            if (destination.shape != nullptr)
                addMismatch(destination, found);
            skippedDepth_ = 1;
            return;
        }
        Frame& frame = frames_.emplace_back();
        frame.shape = destination.shape;
        frame.target = destination.open();
        frame.current = noRow;
        if (frame.shape->kind != Kind::record)
            beginListOrMap(frame);
        else if (frame.shape->makeForm != nullptr && frame.target != nullptr)
            beginForm(frame);
    }

    /// Most documents have their keys in declared order, so the row after the last one is compared first.
    static std::size_t rowOf(const Frame& frame, std::string_view key) {
        const std::span<const Row> rows = frame.shape->rows;
        const std::size_t next = frame.current + 1; // noRow + 1 is 0
        if (next < rows.size() && rows[next].key == key)
            return next;
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.key == key; });
        return row == rows.end() ? noRow : static_cast<std::size_t>(row - rows.begin());
    }

    /// Adds an element to a list and returns its address; null when that would take too much memory.
    void* append(Frame& frame) {
        return frame.current < frame.capacity || grow(frame) ? frame.shape->append(frame.target) : nullptr;
    }

    template <class Value>
    static void store(const Destination& destination, Value value) {
        if (void* const address = destination.open(); address != nullptr)
            *static_cast<Value*>(address) = value;
    }

    void storeNumber(const Destination& destination, std::string_view text);
    void beginListOrMap(Frame& frame);
    static void beginForm(Frame& frame);
    void beginEntry(Frame& frame, std::string_view key);
    void recordLength(const Frame& frame);
    bool grow(Frame& frame);
    void addMismatch(const Destination& destination, std::string_view found);
    void addFailure(Failure&& failure);

    void* rootTarget_;
    const Shape* rootShape_;
    CheckResults* results_;
    std::vector<Frame> frames_;
    std::size_t listsAndMaps_ = 0; ///< How many began so far.
    std::size_t skippedDepth_ = 0; ///< How many objects and lists are open whose values are not used.
    std::optional<Failure> failure_;
    MemoryBudget memory_;
};

} // namespace kinovane::json
