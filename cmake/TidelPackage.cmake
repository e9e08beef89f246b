# SPDX-License-Identifier: LGPL-2.1-or-later
# What other programs find the library by: find_package(TidelCore) and pkg-config TidelCore.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TidelCore)

configure_package_config_file(cmake/TidelCoreConfig.cmake.in TidelCoreConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/TidelCoreConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT TidelCoreTargets NAMESPACE TidelCore:: DESTINATION ${package_dir})
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/TidelCoreConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/TidelCoreConfigVersion.cmake
    DESTINATION ${package_dir})

if(TIDEL_SYSTEM_QTSPARQL)
    set(TIDEL_PC_SPARQL_REQUIRES ", QtSparql")
else()
    set(TIDEL_PC_SPARQL_CFLAGS "-I\${includedir}/TidelCore/QtSparql")
    set(TIDEL_PC_SPARQL_LIBS "-lTidelSparql")
endif()
# Found from where the file is, so that "cmake --install --prefix" needs no new configuring.
file(RELATIVE_PATH TIDEL_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" TIDEL_PC_TO_PREFIX "${TIDEL_PC_TO_PREFIX}")
configure_file(cmake/TidelCore.pc.in TidelCore.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TidelCore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
