// SPDX-License-Identifier: Apache-2.0

#include "commands/export_time.hpp"

#include <array>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string_view>

#include "session/failure.hpp"
#include "terminal/character.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::int64_t lastSecond = 253402300799; // 9999-12-31T23:59:59Z

bool isUTF8(std::string_view text) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.codePoint == Character::notUTF8)
            return false;
        text.remove_prefix(character.length);
    }
    return true;
}

std::optional<std::int64_t> secondsOf(std::string_view text) {
    std::int64_t seconds = 0;
    const char* begin = std::to_address(text.begin());
    const char* end = std::to_address(text.end());
    const auto [rest, error] = std::from_chars(begin, end, seconds);
    if (error != std::errc() || rest != end || text.front() == '-' || seconds > lastSecond)
        return std::nullopt;
    return seconds;
}

std::string timeText(std::int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm utc{};
    ::gmtime_r(&time, &utc);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

} // namespace

std::optional<std::string> exportTime(const std::optional<std::string>& given, const char* sourceDateEpoch) {
    if (given) {
        if (!isUTF8(*given))
            throw UsageError("--exported-at is not UTF-8: \"" + shown(*given) + "\"");
        return given;
    }
    if (sourceDateEpoch == nullptr)
        return std::nullopt;
    const std::optional<std::int64_t> seconds = secondsOf(sourceDateEpoch);
    if (!seconds)
        throw UsageError("SOURCE_DATE_EPOCH is \"" + shown(sourceDateEpoch) +
                         "\", and not a whole number of seconds since 1970");
    return timeText(*seconds);
}

} // namespace kinovane::tool
