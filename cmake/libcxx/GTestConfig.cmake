# SPDX-License-Identifier: Apache-2.0
# For the preset libcxx: GoogleTest compiled from its sources, because the installed library needs libstdc++.
include_guard(GLOBAL) # looked for in several directories
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library IN ITEMS gtest gtest_main gmock gmock_main)
    target_compile_options(${library} PRIVATE -w)
    if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
    endif()
endforeach()
