# SPDX-License-Identifier: MIT
# Debian packages through CPack: libvantor0 (the shared library, named after its SONAME) and
# libvantor-dev (headers, the unversioned link, the CMake package and the pkg-config file).
# scripts/build-deb.sh configures a Release build for the prefix /usr with
# VANTOR_DEBIAN_DOCS=ON, runs `cpack -G DEB` and checks the result with lintian.
option(VANTOR_DEBIAN_DOCS "Install the Debian copyright and changelog files of each package" OFF)

# Debian's names: the SONAME libVantor.so.0 gives libvantor0; libVantor6.so.0 (the Qt 6 build)
# gives libvantor6-0, its name ending in a digit.
if(VANTOR_QT_MAJOR STREQUAL "6")
    set(VANTOR_DEB_RUNTIME lib${VANTOR_PC_NAME}-${PROJECT_VERSION_MAJOR})
    set(VANTOR_DEB_QT_DEV "qt6-base-dev (>= 6.4), qt6-5compat-dev (>= 6.4), qt6-serialport-dev (>= 6.4)")
else()
    set(VANTOR_DEB_RUNTIME lib${VANTOR_PC_NAME}${PROJECT_VERSION_MAJOR})
    set(VANTOR_DEB_QT_DEV "qtbase5-dev (>= 5.15), libqt5serialport5-dev (>= 5.15)")
endif()
set(VANTOR_DEB_DEV lib${VANTOR_PC_NAME}-dev)

if(VANTOR_DEBIAN_DOCS)
    # Debian wants the changelog compressed with maximal compression and no time stamp.
    set(changelog_gz ${CMAKE_CURRENT_BINARY_DIR}/packaging/changelog.Debian.gz)
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/packaging)
    execute_process(COMMAND gzip -n -9 -c ${PROJECT_SOURCE_DIR}/packaging/changelog
                    OUTPUT_FILE ${changelog_gz} COMMAND_ERROR_IS_FATAL ANY)
    foreach(pair "runtime;${VANTOR_DEB_RUNTIME}" "development;${VANTOR_DEB_DEV}")
        list(GET pair 0 component)
        list(GET pair 1 package)
        install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright ${changelog_gz}
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
    endforeach()
endif()

set(CPACK_PACKAGE_NAME ${VANTOR_PC_NAME})
set(CPACK_PACKAGE_VENDOR "The Vantor developers")
set(CPACK_PACKAGE_CONTACT "Vantor developers <maintainers@vantor.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# The packaging revision: these are packages of an upstream version, not a native package.
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://vantor.invalid/")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${VANTOR_DEB_RUNTIME})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
# Both packages share the project's description as their summary line.
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION [[Vantor gives applications written against the Windows class library
(CString, CFile, CRect, AfxMessageBox, SYSTEMTIME...) the same classes on
Qt 5, and the modules industrial-control programs share: message log,
record queue in shared memory, polled serial, TCP and UDP links, database
access and ready-made dialogs.

This package holds the shared library.]])
# The library is in a public folder: the dynamic linker's cache is renewed by the ldconfig
# trigger (CPack's own maintainer scripts also call ldconfig, which lintian only warns about).
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/packaging/runtime/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/packaging/runtime/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${VANTOR_DEB_DEV})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# What find_package(Vantor) finds through find_dependency, and what vantor.pc requires.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${VANTOR_DEB_RUNTIME} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), ${VANTOR_DEB_QT_DEV}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION [[The development files of the library: headers, the CMake package
(find_package(@VANTOR_NAME@)) and the pkg-config file (@VANTOR_PC_NAME@)
for building programs against it.]])

string(CONFIGURE "${CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION}" CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION @ONLY)
include(CPack)
