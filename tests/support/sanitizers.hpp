// SPDX-License-Identifier: Apache-2.0

#pragma once

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

#if defined(KINOVANE_THREAD_SANITIZER)
// The interface of the sanitizer's runtime library; it has no header.
extern "C" {
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

namespace kinovane::test {

/// The thread sanitizer starts a background thread together with the first thread of the program.
#if defined(KINOVANE_THREAD_SANITIZER)
inline constexpr bool underThreadSanitizer = true;
#else
inline constexpr bool underThreadSanitizer = false;
#endif

/// While it exists, the thread sanitizer does not see what the calling thread reads and writes. For threads
/// that use a descriptor while another thread opens and closes it, which is what the test is about.
class UnobservedAccess {
  public:
#if defined(KINOVANE_THREAD_SANITIZER)
    UnobservedAccess() {
        AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }
    ~UnobservedAccess() {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
        AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
    }
#else
    UnobservedAccess() {}  // NOLINT(modernize-use-equals-default): an object without use would be reported
    ~UnobservedAccess() {} // NOLINT(modernize-use-equals-default)
#endif
    UnobservedAccess(const UnobservedAccess&) = delete;
    UnobservedAccess& operator=(const UnobservedAccess&) = delete;
};

/// Both sanitizers allocate memory for themselves and delay the reuse of freed memory, so the memory use of
/// this process cannot be measured.
#if defined(KINOVANE_THREAD_SANITIZER) || defined(KINOVANE_ADDRESS_SANITIZER)
inline constexpr bool memoryIsSanitized = true;
#else
inline constexpr bool memoryIsSanitized = false;
#endif

} // namespace kinovane::test
