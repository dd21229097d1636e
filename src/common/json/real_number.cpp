// SPDX-License-Identifier: Apache-2.0

#include "common/json/real_number.hpp"

#include <version>

// Defined where std::from_chars converts to double, which libc++ could not do for a long time.
#ifdef __cpp_lib_to_chars
#include <charconv>
#include <system_error>
#else
#include <cmath>
#include <new>
#include <string>

#include <locale.h>
#include <stdlib.h>
#if __has_include(<xlocale.h>) // Declares strtod_l on macOS.
#include <xlocale.h>
#endif
#endif

namespace kinovane::json {

#ifdef __cpp_lib_to_chars

std::optional<double> nearestDouble(std::string_view text) {
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

#else

namespace {

/// The "C" locale, in which the decimal separator is a point. The application's may have a comma.
locale_t plainLocale() {
    static const locale_t locale = [] {
        const locale_t made = ::newlocale(LC_ALL_MASK, "C", nullptr);
        if (made == nullptr)
            throw std::bad_alloc();
        return made;
    }();
    return locale;
}

} // namespace

std::optional<double> nearestDouble(std::string_view text) {
    // ERANGE is of no use: some systems set it for the smallest doubles as well.
    const double value = ::strtod_l(std::string(text).c_str(), nullptr, plainLocale());
    return std::isinf(value) ? std::nullopt : std::optional(value);
}

#endif

} // namespace kinovane::json
