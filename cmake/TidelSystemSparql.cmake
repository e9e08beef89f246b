# SPDX-License-Identifier: LGPL-2.1-or-later
# Uses an installed QtSparql instead of qtsparql/.
find_package(PkgConfig REQUIRED)
pkg_check_modules(QTSPARQL REQUIRED IMPORTED_TARGET QtSparql)
add_library(TidelSparql INTERFACE)
target_link_libraries(TidelSparql INTERFACE PkgConfig::QTSPARQL)
add_library(TidelCore::TidelSparql ALIAS TidelSparql)
install(TARGETS TidelSparql EXPORT TidelCoreTargets)
