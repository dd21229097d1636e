// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "tools/timeline/read_timeline.hpp"

namespace kinovane::test {

namespace {

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error("EDL: " + what); }

/// Reads lists in the format CMX3600 whose events are cuts.
class Reader {
  public:
    explicit Reader(const FrameRate& rate)
        : perSecond_(rate.denominator == 1 ? rate.numerator : rate.numerator / 1000),
          dropped_(rate.denominator == 1 || perSecond_ == 24 ? 0 : perSecond_ / 15) {}

    ReadTimeline read(const std::string& document) {
        std::istringstream lines(document);
        std::string line;
        while (std::getline(lines, line)) {
            if (std::ranges::any_of(line, [](char byte) { return byte < ' ' || byte > '~'; }))
                fail("a character that is not printable ASCII");
            readLine(line);
        }
        if (result_.shots.empty())
            fail("no events");
        result_.length = result_.shots.back().start + result_.shots.back().length;
        std::ranges::sort(result_.sounds, {},
                          [](const ReadSound& sound) { return std::tuple(sound.start, sound.url); });
        return result_;
    }

  private:
    /// The frame that a timecode stands for.
    std::int64_t frameAt(const std::string& code) const {
        static const std::regex form(R"((\d\d):(\d\d):(\d\d)([:;])(\d\d))");
        std::smatch part;
        if (!std::regex_match(code, part, form) || (part[4] == ";") != (dropped_ > 0))
            fail("the timecode " + code);
        const auto number = [&](std::size_t index) { return std::int64_t{std::stoi(part[index])}; };
        const std::int64_t minutes = number(1) * 60 + number(2);
        const std::int64_t seconds = number(3);
        const std::int64_t frames = number(5);
        const bool isDropped = seconds == 0 && frames < dropped_ && minutes % 10 != 0;
        if (number(1) > 23 || number(2) > 59 || seconds > 59 || frames >= perSecond_ || isDropped)
            fail("the timecode " + code + " does not exist");
        return (minutes * 60 + seconds) * perSecond_ + frames - dropped_ * (minutes - minutes / 10);
    }

    void readLine(const std::string& line) {
        static const std::regex event(
            R"((\d{3})  ([A-Z0-9 ]{8}) V     C        (\S{11}) (\S{11}) (\S{11}) (\S{11}))");
        static const std::regex comment(R"(\* ([A-Z ]+): (.*))");
        std::smatch part;
        ++number_;
        if (number_ == 1 && line.starts_with("TITLE: "))
            result_.title = line.substr(7);
        else if (number_ == 2 && line == (dropped_ > 0 ? "FCM: DROP FRAME" : "FCM: NON-DROP FRAME"))
            return;
        else if (number_ > 2 && std::regex_match(line, part, event))
            readEvent(part);
        else if (number_ > 2 && !result_.shots.empty() && std::regex_match(line, part, comment))
            readComment(part[1], part[2]);
        else
            fail("the line " + line);
    }

    void readEvent(const std::smatch& part) {
        ReadShot shot;
        shot.start = frameAt(part[5]);
        shot.length = frameAt(part[6]) - shot.start;
        if (std::stoul(part[1]) != result_.shots.size() + 1 || frameAt(part[3]) != 0 ||
            frameAt(part[4]) != shot.length || shot.length < 1)
            fail("the event " + part.str());
        reel_ = part[2];
        result_.shots.push_back(shot);
    }

    void readComment(const std::string& key, const std::string& value) {
        ReadShot& shot = result_.shots.back();
        if (key == "SHOT") {
            shot.id = value.substr(0, value.find(", TAKE "));
        } else if (key == "SOURCE FILE") {
            if (reel_ == "BL      ")
                fail("a file for black");
            const auto [known, isNew] = reels_.emplace(reel_, value);
            if (!isNew && known->second != value)
                fail("two files with the reel " + reel_);
            shot.url = value;
        } else if (key == "TRANSITION") {
            shot.transition = value;
        } else if (key == "LOC") {
            shot.markers.push_back({frameAt(value.substr(0, 11)), value.substr(20)});
        } else if (key == "SOUND") {
            const std::int64_t start = frameAt(value.substr(0, 11));
            result_.sounds.push_back({start, frameAt(value.substr(12, 11)) - start, value.substr(24)});
        } else if (key == "SUBTITLES") {
            result_.subtitles.push_back(value);
        } else if (key != "FROM CLIP NAME") {
            fail("the comment " + key);
        }
    }

    std::int64_t perSecond_;
    std::int64_t dropped_; ///< Numbers that are left out at the start of a minute.
    ReadTimeline result_;
    std::size_t number_ = 0; ///< Of the line.
    std::string reel_;       ///< Of the last event.
    std::map<std::string, std::string> reels_;
};

} // namespace

ReadTimeline readEDL(const std::string& document, const FrameRate& rate) {
    return Reader(rate).read(document);
}

} // namespace kinovane::test
