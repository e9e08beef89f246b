# SPDX-License-Identifier: LGPL-2.1-or-later
# The options that every target of this project is compiled with. They do not affect consumers.
function(tidel_target_defaults target)
    target_compile_options(${target} PRIVATE
        # The generated C code is compiled without warnings.
        $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow>
        # Trace messages carry source paths, which must not depend on where the tree was built.
        -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
    if(TIDEL_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
endfunction()

function(tidel_library_defaults target)
    tidel_target_defaults(${target})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # Clang links its sanitizers into programs, not into libraries.
    if(NOT TIDEL_BUILD_FUZZERS)
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()

# An installed file finds its libraries relative to its own place, so that the prefix may be any.
function(tidel_installed_in target folder)
    file(RELATIVE_PATH libraries /${folder} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
endfunction()
