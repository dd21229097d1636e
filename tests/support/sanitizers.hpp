// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::test {

// g++ defines a macro for each sanitizer, clang has __has_feature.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KINOVANE_THREAD_SANITIZER
#endif
#if __has_feature(address_sanitizer)
#define KINOVANE_ADDRESS_SANITIZER
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define KINOVANE_THREAD_SANITIZER
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KINOVANE_ADDRESS_SANITIZER
#endif

/// The thread sanitizer starts a background thread together with the first thread of the program.
#if defined(KINOVANE_THREAD_SANITIZER)
inline constexpr bool underThreadSanitizer = true;
#else
inline constexpr bool underThreadSanitizer = false;
#endif

/// Both sanitizers allocate memory for themselves and delay the reuse of freed memory, so the memory use of
/// this process cannot be measured.
#if defined(KINOVANE_THREAD_SANITIZER) || defined(KINOVANE_ADDRESS_SANITIZER)
inline constexpr bool memoryIsSanitized = true;
#else
inline constexpr bool memoryIsSanitized = false;
#endif

} // namespace kinovane::test
