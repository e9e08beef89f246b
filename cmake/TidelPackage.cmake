# SPDX-License-Identifier: LGPL-2.1-or-later
# Installs the files of find_package() and pkg-config, so that other programs find the libraries.
include(CMakePackageConfigHelpers)

# The .pc files find the prefix from their own place, so that "cmake --install --prefix" needs no configuring.
file(RELATIVE_PATH TIDEL_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" TIDEL_PC_TO_PREFIX "${TIDEL_PC_TO_PREFIX}")
if(TIDEL_SYSTEM_QTSPARQL)
    set(TIDEL_PC_SPARQL_REQUIRES ", QtSparql")
else()
    set(TIDEL_PC_SPARQL_CFLAGS "-I\${includedir}/TidelCore/QtSparql")
    set(TIDEL_PC_SPARQL_LIBS "-lTidelSparql")
endif()

# A project that uses the other Qt is refused.
if(TIDEL_QT_MAJOR EQUAL 5)
    set(TIDEL_OTHER_QT_MAJOR 6)
else()
    set(TIDEL_OTHER_QT_MAJOR 5)
endif()

# tidel_package(NAME VERSION COMPATIBILITY) installs the package NAME with the exported targets NAMETargets.
function(tidel_package name version compatibility)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    configure_package_config_file(cmake/${name}Config.cmake.in ${name}Config.cmake
        INSTALL_DESTINATION ${package_dir})
    write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/${name}ConfigVersion.cmake
        VERSION ${version}
        COMPATIBILITY ${compatibility})
    install(EXPORT ${name}Targets NAMESPACE ${name}:: DESTINATION ${package_dir})
    install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/${name}Config.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/${name}ConfigVersion.cmake
        DESTINATION ${package_dir})
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

tidel_package(TidelCore ${PROJECT_VERSION} SameMajorVersion)
# Before 1.0 each minor version may change the interface.
tidel_package(TidelReader ${TIDELREADER_VERSION} SameMinorVersion)
