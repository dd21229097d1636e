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

#include "common/json_failure.hpp"
#include "common/json_frame.hpp"
#include "common/json_number.hpp"
#include "common/json_shape.hpp"

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

    Receiver(void* target, const Shape& shape) : rootTarget_(target), rootShape_(&shape) {
        frames_.reserve(16);
    }

    const std::optional<Failure>& failure() const { return failure_; }

    // The names and signatures from here on are the parser's.
    using Code = boost::json::error_code;
    using View = boost::json::string_view;

    bool on_document_begin(Code& /*error*/) { return true; }
    bool on_document_end(Code& /*error*/) { return true; }

    bool on_object_begin(Code& /*error*/) {
        begin("an object", [](Kind kind) { return kind == Kind::record || kind == Kind::map; });
        return true;
    }
    bool on_object_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }
    bool on_array_begin(Code& /*error*/) {
        begin("a list", [](Kind kind) { return kind == Kind::list; });
        return true;
    }
    bool on_array_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }

    bool on_key_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_key(View rest, std::size_t /*size*/, Code& /*error*/) {
        if (skipped_ == 0)
            openKey(joined(rest));
        parts_.clear();
        return true;
    }

    bool on_string_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_string(View rest, std::size_t /*size*/, Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::text)
                static_cast<std::string*>(place.open())->assign(joined(rest));
            else
                mismatch(place, "a string");
        }
        parts_.clear();
        return true;
    }

    bool on_number_part(View part, Code& /*error*/) { return keepPart(part); }
    bool on_int64(std::int64_t /*value*/, View rest, Code& /*error*/) { return number(rest); }
    bool on_uint64(std::uint64_t /*value*/, View rest, Code& /*error*/) { return number(rest); }
    bool on_double(double /*value*/, View rest, Code& /*error*/) { return number(rest); }

    bool on_bool(bool value, Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::boolean)
                *static_cast<bool*>(place.open()) = value;
            else
                mismatch(place, value ? "true" : "false");
        }
        return true;
    }

    bool on_null(Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.row != nullptr && !place.row->required)
                place.row->clear(place.address);
            else
                mismatch(place, "null");
        }
        return true;
    }

    bool on_comment_part(View /*part*/, Code& /*error*/) { return true; }
    bool on_comment(View /*rest*/, Code& /*error*/) { return true; }

  private:
    /// Where the next value belongs; nowhere, when its key is unknown.
    struct Place {
        const Shape* shape = nullptr;
        void* address = nullptr;
        const Row* row = nullptr; ///< Of a record's member; the address is then the record's.

        void* open() const { return row != nullptr ? row->open(address) : address; }
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
            ++frame.current; // Begins at the index before the first.
            return {frame.shape->element, frame.shape->append(frame.target), nullptr};
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
        if (frame.shape->makeForm != nullptr) {
            Extra& extra = frame.needExtra();
            extra.record = frame.target;
            extra.form = frame.shape->makeForm();
            frame.target = extra.form.get();
        }
    }

    void end() {
        if (skipped_ != 0) {
            --skipped_;
            return;
        }
        Frame& frame = frames_.back();
        std::optional<Failure> failure = frame.firstFailure();
        if (frame.shape->takeForm != nullptr && !failure)
            frame.shape->takeForm(frame.target, frame.extra->record);
        frames_.pop_back();
        if (failure)
            note(std::move(*failure));
    }

    void openKey(std::string_view key) {
        Frame& frame = frames_.back();
        if (frame.shape->kind == Kind::map) {
            const Shape::Entry entry = frame.shape->enter(frame.target, key);
            frame.entryKey = entry.key;
            frame.entryValue = entry.value;
            if (frame.extra)
                frame.extra->keyFailures.erase(std::string(key));
            return;
        }
        frame.current = rowOf(frame, key);
        if (frame.current == noRow)
            return;
        const std::uint64_t bit = std::uint64_t{1} << frame.current;
        if ((frame.seen & bit) != 0) {
            // The last of two equal keys wins, so nothing of the first may be left.
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

    bool number(View rest) {
        if (const Place place = nextPlace(); place.shape != nullptr)
            putNumber(place, joined(rest));
        parts_.clear();
        return true;
    }

    void putNumber(const Place& place, std::string_view text) {
        if (place.shape->kind == Kind::integer) {
            const IntegerValue integer = integerValue(text);
            if (integer.fault == NumberFault::none)
                *static_cast<std::int64_t*>(place.open()) = integer.value;
            else
                note(Failure::mismatch(
                    integer.fault == NumberFault::fraction ? "an integer" : "an integer that fits 64 bits",
                    quotedNumber(text)));
        } else if (place.shape->kind == Kind::real) {
            if (const std::optional<double> real = realValue(text))
                *static_cast<double*>(place.open()) = *real;
            else
                note(Failure::mismatch("a number that fits a double", quotedNumber(text)));
        } else {
            mismatch(place, "a number");
        }
    }

    void mismatch(const Place& place, std::string_view found) {
        note(Failure::mismatch(nameOf(place.shape->kind), found));
    }

    void note(Failure&& failure) {
        if (frames_.empty())
            failure_ = std::move(failure);
        else
            frames_.back().note(std::move(failure));
    }

    bool keepPart(View part) {
        if (skipped_ == 0)
            parts_.append(part.data(), part.size());
        return true;
    }

    /// The parts so far and the rest; valid until the next event.
    std::string_view joined(View rest) {
        if (parts_.empty())
            return {rest.data(), rest.size()};
        parts_.append(rest.data(), rest.size());
        return parts_;
    }

    void* rootTarget_;
    const Shape* rootShape_;
    std::vector<Frame> frames_;
    std::size_t skipped_ = 0; ///< How deep inside a value that belongs nowhere.
    std::string parts_;
    std::optional<Failure> failure_;
};

} // namespace kinovane::json
