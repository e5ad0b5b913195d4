# SPDX-License-Identifier: MIT
# The API reference: `cmake --build build --target docs` runs doxygen over the public headers and
# writes HTML into build/docs/html. The target exists only when doxygen is found; any doxygen
# warning (an undocumented public symbol, a broken command) fails it.
#
# VANTOR_DOCS_EXCLUDE lists headers (paths relative to the source tree) left out of the run.

option(VANTOR_BUILD_DOCS "Add the docs target (API reference) when doxygen is found" ${PROJECT_IS_TOP_LEVEL})
if(NOT VANTOR_BUILD_DOCS)
    return()
endif()

# 1.9 or later: FAIL_ON_WARNINGS.
find_package(Doxygen 1.9 QUIET)
if(NOT DOXYGEN_FOUND)
    message(STATUS "doxygen 1.9 or later not found: no docs target")
    return()
endif()

set(VANTOR_DOCS_EXCLUDE "" CACHE STRING "Public headers (relative to the source tree) the API reference leaves out")

get_property(vantor_docs_headers GLOBAL PROPERTY VANTOR_PUBLIC_HEADERS)
set(vantor_docs_dirs "")
foreach(h ${vantor_docs_headers})
    get_filename_component(dir ${h} DIRECTORY)
    list(APPEND vantor_docs_dirs ${dir})
endforeach()
list(REMOVE_DUPLICATES vantor_docs_dirs)

set(vantor_docs_excluded "")
foreach(h ${VANTOR_DOCS_EXCLUDE})
    list(APPEND vantor_docs_excluded ${PROJECT_SOURCE_DIR}/${h})
endforeach()

# Doxygen takes space-separated lists with quoted entries.
function(vantor_docs_list out)
    set(text "")
    foreach(item ${ARGN})
        string(APPEND text " \\\n    \"${item}\"")
    endforeach()
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

set(VANTOR_DOCS_OUTPUT_DIR ${PROJECT_BINARY_DIR}/docs)
vantor_docs_list(VANTOR_DOCS_INPUT ${vantor_docs_headers} ${PROJECT_SOURCE_DIR}/README.md
                 ${PROJECT_SOURCE_DIR}/docs/PORTING.md)
vantor_docs_list(VANTOR_DOCS_EXCLUDE ${vantor_docs_excluded})
vantor_docs_list(VANTOR_DOCS_INCLUDE_DIRS ${vantor_docs_dirs} ${PROJECT_BINARY_DIR}/src)
set(VANTOR_DOCS_MAINPAGE ${PROJECT_SOURCE_DIR}/README.md)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${VANTOR_DOCS_OUTPUT_DIR}/Doxyfile @ONLY)

# Doxygen writes its warnings to the build output and exits non-zero on any (FAIL_ON_WARNINGS).
add_custom_target(docs
    COMMAND ${DOXYGEN_EXECUTABLE} ${VANTOR_DOCS_OUTPUT_DIR}/Doxyfile
    WORKING_DIRECTORY ${VANTOR_DOCS_OUTPUT_DIR}
    DEPENDS ${VANTOR_DOCS_OUTPUT_DIR}/Doxyfile
    COMMENT "Writing the API reference into ${VANTOR_DOCS_OUTPUT_DIR}/html"
    VERBATIM)
