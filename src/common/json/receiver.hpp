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

#include <boost/json/error.hpp>
#include <boost/json/string_view.hpp>

#include "common/json/failure.hpp"
#include "common/json/frame.hpp"
#include "common/json/number.hpp"
#include "common/json/parts.hpp"
#include "common/json/shape.hpp"
#include "common/json/storage.hpp"

namespace kinovane::json {

/// How a message names what a value should have been.
std::string_view nameOf(Kind kind);

/// A number as it is quoted in a message.
std::string quotedNumber(std::string_view text);

/// Takes the parser's events and puts the values where they belong. A wrong value does not stop it, because a
/// syntax error further on would be the one to report, and a later key may replace the wrong value.
class Receiver {
  public:
    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;

    /// Stores the values in `target`, and stops the parser when they would take too much memory.
    Receiver(void* target, const Shape& shape) : rootTarget_(target), rootShape_(&shape) {
        frames_.reserve(16);
    }

    /// Only checks the document when `target` is null, and completes the survey. Otherwise stores the values
    /// with what the survey tells, and without a limit.
    Receiver(void* target, const Shape& shape, Survey& survey) : Receiver(target, shape) {
        storage_ = Storage::unlimited();
        survey_ = &survey;
    }

    /// Called before anything is received, and again when the document turns out to be larger.
    void setDocumentSize(std::uint64_t size) { storage_.setDocumentSize(size); }

    /// What to report, once the document has ended.
    const std::optional<Failure>& failure() const { return failure_; }

    /// Whether the parser was stopped.
    bool exceeded() const { return storage_.exceeded(); }

    // The names and signatures from here on are the parser's.
    using Code = boost::json::error_code;
    using View = boost::json::string_view;

    bool on_document_begin(Code& /*error*/) { return true; }
    bool on_document_end(Code& /*error*/) { return true; }

    bool on_object_begin(Code& error) {
        begin("an object", [](Kind kind) { return kind == Kind::record || kind == Kind::map; });
        return proceed(error);
    }
    bool on_object_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }
    bool on_array_begin(Code& error) {
        begin("a list", [](Kind kind) { return kind == Kind::list; });
        return proceed(error);
    }
    bool on_array_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }

    bool on_key_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_key(View rest, std::size_t /*size*/, Code& error) {
        if (skipped_ == 0)
            openKey(joined(rest));
        parts_.drop();
        return proceed(error);
    }

    bool on_string_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_string(View rest, std::size_t /*size*/, Code& error) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::text)
                putText(place, joined(rest));
            else
                mismatch(place, "a string");
        }
        parts_.drop();
        return proceed(error);
    }

    bool on_number_part(View part, Code& /*error*/) { return keepPart(part); }
    bool on_int64(std::int64_t /*value*/, View rest, Code& error) { return number(rest, error); }
    bool on_uint64(std::uint64_t /*value*/, View rest, Code& error) { return number(rest, error); }
    bool on_double(double /*value*/, View rest, Code& error) { return number(rest, error); }

    bool on_bool(bool value, Code& error) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::boolean)
                put(place, value);
            else
                mismatch(place, value ? "true" : "false");
        }
        return proceed(error);
    }

    bool on_null(Code& error) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.row == nullptr || place.row->required)
                mismatch(place, "null");
            else if (place.address != nullptr)
                place.row->clear(place.address);
        }
        return proceed(error);
    }

    bool on_comment_part(View /*part*/, Code& /*error*/) { return true; }
    bool on_comment(View /*rest*/, Code& /*error*/) { return true; }

  private:
    /// Where the next value belongs; nowhere, when its key is unknown.
    struct Place {
        const Shape* shape = nullptr;
        void* address = nullptr;  ///< Null when nothing is to be stored.
        const Row* row = nullptr; ///< Of a record's member; the address is then the record's.

        void* open() const { return row != nullptr && address != nullptr ? row->open(address) : address; }
    };

    static constexpr std::size_t noRow = SIZE_MAX;

    Place nextPlace() {
        if (skipped_ != 0)
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
            if (frame.holdsWrongRow())
                return {};
            ++frame.current; // Begins at the index before the first.
            return {frame.shape->element, frame.target != nullptr ? append(frame) : nullptr, nullptr};
        }
    }

    template <class Fits>
    void begin(std::string_view found, Fits fits) {
        if (skipped_ != 0) {
            ++skipped_;
            return;
        }
        const Place place = nextPlace();
        if (place.shape == nullptr || !fits(place.shape->kind)) {
            if (place.shape != nullptr)
                mismatch(place, found);
            skipped_ = 1;
            return;
        }
        Frame& frame = frames_.emplace_back();
        frame.shape = place.shape;
        frame.target = place.open();
        frame.current = noRow;
        if (frame.shape->kind != Kind::record)
            beginNumbered(frame);
        else if (frame.shape->makeForm != nullptr && frame.target != nullptr)
            beginForm(frame);
    }

    void end() {
        if (skipped_ != 0) {
            --skipped_;
            return;
        }
        Frame& frame = frames_.back();
        std::optional<Failure> failure = frame.firstFailure();
        if (frame.shape->kind == Kind::list && survey_ != nullptr && frame.target == nullptr)
            endSurveyed(frame);
        else if (frame.shape->takeForm != nullptr && frame.target != nullptr && !failure)
            frame.shape->takeForm(frame.target, frame.extra->record);
        frames_.pop_back();
        if (failure)
            note(std::move(*failure));
    }

    void openKey(std::string_view key) {
        Frame& frame = frames_.back();
        if (frame.shape->kind == Kind::map) {
            openEntry(frame, key);
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
            frame.forgetRow(frame.current);
        }
        frame.seen |= bit;
    }

    /// Most documents have their keys in declared order, so the row after the last one is looked at first.
    static std::size_t rowOf(const Frame& frame, std::string_view key) {
        const std::span<const Row> rows = frame.shape->rows;
        const std::size_t next = frame.current + 1; // noRow + 1 is 0
        if (next < rows.size() && rows[next].key == key)
            return next;
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.key == key; });
        return row == rows.end() ? noRow : static_cast<std::size_t>(row - rows.begin());
    }

    /// Adds an element to a list. Null when that would take too much memory.
    void* append(Frame& frame) {
        return frame.current < frame.capacity || grow(frame) ? frame.shape->append(frame.target) : nullptr;
    }

    bool number(View rest, Code& error) {
        if (const Place place = nextPlace(); place.shape != nullptr)
            putNumber(place, joined(rest));
        parts_.drop();
        return proceed(error);
    }

    template <class Value>
    static void put(const Place& place, Value value) {
        if (void* const address = place.open(); address != nullptr)
            *static_cast<Value*>(address) = value;
    }

    void putText(const Place& place, std::string_view text) {
        if (place.address != nullptr && storage_.takeText(text.size()))
            static_cast<std::string*>(place.open())->assign(text);
    }

    void putNumber(const Place& place, std::string_view text) {
        if (place.shape->kind == Kind::integer) {
            const IntegerValue integer = integerValue(text);
            if (integer.fault == NumberFault::none)
                put(place, integer.value);
            else
                note(Failure::mismatch(
                    integer.fault == NumberFault::fraction ? "an integer" : "an integer that fits 64 bits",
                    quotedNumber(text)));
        } else if (place.shape->kind == Kind::real) {
            if (const std::optional<double> real = realValue(text))
                put(place, *real);
            else
                note(Failure::mismatch("a number that fits a double", quotedNumber(text)));
        } else {
            mismatch(place, "a number");
        }
    }

    bool keepPart(View part) {
        if (skipped_ == 0)
            parts_.add({part.data(), part.size()});
        return true;
    }

    std::string_view joined(View rest) { return parts_.joined({rest.data(), rest.size()}); }

    /// What every event that may store something returns. False stops the parser.
    bool proceed(Code& error) const {
        if (!storage_.exceeded())
            return true;
        error = boost::json::error::array_too_large; // The parser wants some error; `exceeded` tells.
        return false;
    }

    void beginNumbered(Frame& frame);
    static void beginForm(Frame& frame);
    void endSurveyed(const Frame& frame);
    void openEntry(Frame& frame, std::string_view key);
    bool grow(Frame& frame);
    void mismatch(const Place& place, std::string_view found);
    void note(Failure&& failure);

    void* rootTarget_;
    const Shape* rootShape_;
    std::vector<Frame> frames_;
    std::size_t numbered_ = 0; ///< How many lists and maps began.
    std::size_t skipped_ = 0;  ///< How deep inside a value that belongs nowhere.
    Parts parts_;
    std::optional<Failure> failure_;
    Storage storage_;
    Survey* survey_ = nullptr;
};

} // namespace kinovane::json
