# SPDX-License-Identifier: Apache-2.0
# Four components: Runtime (the shared library), Development (what an application needs to find and link the library:
# headers, a CMake package, a pkg-config file, the static library or the link to the shared one), Tools (the command-line
# tool) and testkit (what the tests of an application need as well: the simulators and the headers of kinovane/testing).
include(CMakePackageConfigHelpers)

install(TARGETS KinovaneCore EXPORT KinovaneCoreTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kinovane ${PROJECT_BINARY_DIR}/include/kinovane
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development FILES_MATCHING PATTERN "*.hpp"
    PATTERN testing EXCLUDE)
if(TARGET kinovane)
    install(TARGETS kinovane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
endif()

set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/KinovaneCore)
# A shared and a static library may be installed to one prefix. Each has a file of its own; all others are alike.
if(BUILD_SHARED_LIBS)
    set(kind shared)
else()
    set(kind static)
endif()
install(EXPORT KinovaneCoreTargets NAMESPACE KinovaneCore:: FILE KinovaneCore-${kind}.cmake
    DESTINATION ${packageDirectory} COMPONENT Development)
if(KINOVANE_BUILD_SIMULATORS)
    set(simulators film pi quexrun vistrel)
    list(TRANSFORM simulators PREPEND kinovane_simulator_)
    install(TARGETS ${simulators} kinovane_testkit EXPORT KinovaneCoreTestkitTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kinovane-core COMPONENT testkit)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kinovane/testing
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kinovane COMPONENT testkit FILES_MATCHING PATTERN "*.hpp")
    install(EXPORT KinovaneCoreTestkitTargets NAMESPACE KinovaneCore:: FILE KinovaneCore-testkit.cmake
        DESTINATION ${packageDirectory} COMPONENT testkit)
endif()
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KinovaneCoreConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfig.cmake INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KinovaneCoreConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfig.cmake
    ${PROJECT_BINARY_DIR}/KinovaneCoreConfigVersion.cmake
    DESTINATION ${packageDirectory} COMPONENT Development)

# A static library brings its own dependencies to the application's link line, and its headers import nothing. Beside a
# shared library, "pkg-config --static" prints the same. The file of the shared library requires no other package, not
# even privately, because pkg-config looks for private requirements as well.
if(BUILD_SHARED_LIBS)
    set(pkgConfigDependencies "Cflags.private: -DKINOVANE_STATIC_DEFINE
Libs: -L\${libdir} -lKinovaneCore
Libs.private: -lboost_json -lcrypto -pthread")
else()
    set(pkgConfigDependencies "Requires: libcrypto >= 3.0
Libs: -L\${libdir} -lKinovaneCore -lboost_json -pthread")
    set(pkgConfigCFlags " -DKINOVANE_STATIC_DEFINE")
endif()
# Relative to where the file itself lies, so that an install tree may be moved.
file(RELATIVE_PATH prefixFromPkgConfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kinovane-core.pc.in ${PROJECT_BINARY_DIR}/kinovane-core.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kinovane-core.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT Development)
