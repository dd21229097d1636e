# SPDX-License-Identifier: Apache-2.0
# For the preset libcxx: Boost.JSON compiled from its headers, because the installed library needs libstdc++.
file(WRITE ${CMAKE_BINARY_DIR}/boost_json.cpp "#include <boost/json/src.hpp>\n")
add_library(boost_json STATIC ${CMAKE_BINARY_DIR}/boost_json.cpp)
set_target_properties(boost_json PROPERTIES CXX_STANDARD 20 POSITION_INDEPENDENT_CODE ON CXX_CLANG_TIDY "")
target_compile_options(boost_json PRIVATE -w)
add_library(Boost::json ALIAS boost_json)
add_library(Boost::headers INTERFACE IMPORTED GLOBAL)
