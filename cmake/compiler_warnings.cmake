# SPDX-License-Identifier: Apache-2.0
# Included by the presets after the compiler is known. Turns off the warnings of one compiler that are wrong.

# g++ 12 sees overlapping copies in its own std::string (its bug 105651) and, depending on what it inlines, copies of
# impossible sizes; and ambiguity in the macros of GoogleTest.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    string(APPEND CMAKE_CXX_FLAGS " -Wno-restrict -Wno-stringop-overflow -Wno-dangling-else")
endif()
