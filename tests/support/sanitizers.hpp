// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::test {

// g++ defines a macro for each sanitizer, clang answers a question.
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

/// It starts a thread of its own together with the first one, and keeps it.
#if defined(KINOVANE_THREAD_SANITIZER)
inline constexpr bool underThreadSanitizer = true;
#else
inline constexpr bool underThreadSanitizer = false;
#endif

/// Both use memory of their own, and keep freed memory back, so that its use is noticed: what this process
/// uses says nothing then.
#if defined(KINOVANE_THREAD_SANITIZER) || defined(KINOVANE_ADDRESS_SANITIZER)
inline constexpr bool memoryIsSanitized = true;
#else
inline constexpr bool memoryIsSanitized = false;
#endif

} // namespace kinovane::test
