# SPDX-License-Identifier: Apache-2.0
# What an application needs to find and link the library: a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS KinovaneCore EXPORT KinovaneCoreTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kinovane ${PROJECT_BINARY_DIR}/include/kinovane
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.hpp")
if(TARGET kinovane)
    install(TARGETS kinovane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/KinovaneCore)
install(EXPORT KinovaneCoreTargets NAMESPACE KinovaneCore:: DESTINATION ${packageDirectory})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KinovaneCoreConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfig.cmake INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KinovaneCoreConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfig.cmake
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfigVersion.cmake
    DESTINATION ${packageDirectory})

# A static library brings its own dependencies to the application's link line, and its headers import nothing.
if(BUILD_SHARED_LIBS)
    set(pkgConfigCFlags "")
    set(pkgConfigRequires "")
    set(pkgConfigLibs "")
else()
    set(pkgConfigCFlags "-DKINOVANE_STATIC_DEFINE")
    set(pkgConfigRequires "libcrypto >= 3.0")
    set(pkgConfigLibs "-lboost_json -pthread")
endif()
# Relative to where the file itself lies, so that an install tree may be moved.
file(RELATIVE_PATH prefixFromPkgConfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kinovane-core.pc.in ${PROJECT_BINARY_DIR}/kinovane-core.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kinovane-core.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
