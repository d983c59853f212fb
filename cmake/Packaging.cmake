# The Debian packages, made by cpack -G DEB from the install components:
#   runtime  libquarry<soversion>  the shared library
#   dev      libquarry-dev         headers, CMake package, quarry.pc
#   tools    quarry-tools          the programs, their manual pages, the bus files
#   doc      libquarry-doc         the HTML API reference (when Doxygen is there)
# and libquarry<soversion>-dbgsym and quarry-tools-dbgsym with the debug
# symbols split off the stripped binaries. They are made as Debian's own
# tools would make them, so that lintian passes them (the install test runs
# it): gzipped manual pages and changelogs, a copyright file in every
# package, the ldconfig trigger, shlibs.

set(QUARRY_MAINTAINER "Quarry maintainers <maintainers@users.noreply.c-seed-c1d39c33.example>"
    CACHE STRING "Maintainer of the Debian packages, as Name <address>")

set(QUARRY_COMPONENTS runtime dev tools)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libquarry${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libquarry-dev)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME quarry-tools)
if(TARGET docs)
    list(APPEND QUARRY_COMPONENTS doc)
    set(CPACK_DEBIAN_DOC_PACKAGE_NAME libquarry-doc)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libquarry-doc
        COMPONENT doc)
    # Registers the reference with doc-base, for the documentation browsers.
    install(FILES cmake/debian/doc-base
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc-base
        RENAME libquarry-doc.libquarry-api
        COMPONENT doc)
endif()

# A file compressed as Debian installs manual pages and changelogs: gzip -9
# without name and time stamp, so that the same source gives the same bytes.
function(quarry_gzip source output)
    cmake_path(GET output PARENT_PATH folder)
    cmake_path(GET source FILENAME name)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -E copy ${source} ${folder}/${name}
        COMMAND gzip -9nf ${folder}/${name}
        DEPENDS ${source}
        VERBATIM)
endfunction()

# The manual pages of the programs in one language, from docs/<folder> into
# destination, with the version filled in; appended to manpages.
function(quarry_manpages folder destination)
    set(pages "")
    foreach(program IN ITEMS quarry-viewer quarry-ask quarry-config quarry-service)
        set(page ${PROJECT_BINARY_DIR}/${folder}/${program}.1)
        configure_file(docs/${folder}/${program}.1 ${page} @ONLY)
        set(gzipped ${PROJECT_BINARY_DIR}/${folder}/gz/${program}.1.gz)
        quarry_gzip(${page} ${gzipped})
        list(APPEND pages ${gzipped})
    endforeach()
    install(FILES ${pages} DESTINATION ${destination} COMPONENT tools)
    set(manpages ${manpages} ${pages} PARENT_SCOPE)
endfunction()
set(manpages "")
quarry_manpages(man ${CMAKE_INSTALL_MANDIR}/man1)
# Where man looks under a Chinese locale.
quarry_manpages(man/zh_CN ${CMAKE_INSTALL_MANDIR}/zh_CN/man1)

# Every package has its copyright and changelog in /usr/share/doc/<package>.
# The changelog's newest entry is the version being built.
file(STRINGS cmake/debian/changelog newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^quarry \\(${PROJECT_VERSION}\\) ")
    message(FATAL_ERROR "cmake/debian/changelog begins with \"${newest}\": "
        "add an entry for version ${PROJECT_VERSION}")
endif()
quarry_gzip(${PROJECT_SOURCE_DIR}/cmake/debian/changelog ${PROJECT_BINARY_DIR}/debian/changelog.gz)
# The guides the programs' help and manual pages point to, with the sample
# log catalogue whose opening comment describes the format.
quarry_gzip(${PROJECT_SOURCE_DIR}/docs/administration.md ${PROJECT_BINARY_DIR}/doc/administration.md.gz)
quarry_gzip(${PROJECT_SOURCE_DIR}/docs/host-guide.md ${PROJECT_BINARY_DIR}/doc/host-guide.md.gz)
install(FILES ${PROJECT_BINARY_DIR}/doc/administration.md.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_TOOLS_PACKAGE_NAME} COMPONENT tools)
install(FILES data/sample/logs.ini
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_TOOLS_PACKAGE_NAME}/examples
    COMPONENT tools)
install(FILES ${PROJECT_BINARY_DIR}/doc/host-guide.md.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_DEV_PACKAGE_NAME} COMPONENT dev)
add_custom_target(packaging_files ALL DEPENDS ${manpages} ${PROJECT_BINARY_DIR}/debian/changelog.gz
    ${PROJECT_BINARY_DIR}/doc/administration.md.gz ${PROJECT_BINARY_DIR}/doc/host-guide.md.gz)
foreach(component IN LISTS QUARRY_COMPONENTS)
    string(TOUPPER ${component} upper)
    install(FILES cmake/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
        COMPONENT ${component})
endforeach()

set(CPACK_PACKAGE_NAME quarry)
set(CPACK_PACKAGE_VENDOR "Quarry")
set(CPACK_PACKAGE_CONTACT "${QUARRY_MAINTAINER}")
# Empty, or CPack would put the one summary over every package's own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${QUARRY_COMPONENTS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Our own library is no system package: it is left to the component
# dependencies above.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(QUARRY_ABOUT "Quarry is the query-condition component of a bank's seal-verification
system. When an operator wants to look at a log (seal verifications,
business operations, teller actions, logins, ...), the host application
asks Quarry: it shows a dialog, checks the conditions the operator enters
and hands back the SQL condition for the host's own SELECT.")

set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "query conditions for seal-verification logs (library)
${QUARRY_ABOUT}

Quarry also reads the station's seal.ini, its configuration and reference
lists held in the databases, looks up tellers and branches, and keeps an
error log. This package contains the shared library.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# The database drivers are plugins, which no library links.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libqt6sql6-sqlite")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "libqt6sql6-mysql, libqt6sql6-odbc, odbc-mariadb")
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
# shlibs tells the packages built on the library which version they need;
# the trigger has ldconfig see the library once dpkg is done.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/FinishPackages.cmake)

set(CPACK_DEBIAN_DEV_DESCRIPTION "query conditions for seal-verification logs (development files)
${QUARRY_ABOUT}

This package contains what a host application is built with: the headers,
the CMake package (find_package(Quarry)) and the pkg-config file quarry.pc.")
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qt6-base-dev")

set(CPACK_DEBIAN_TOOLS_DESCRIPTION "query conditions for seal-verification logs (programs)
${QUARRY_ABOUT}

This package contains the programs: quarry-viewer, which shows the logs of
the station to those who read them; quarry-ask, which asks for a condition
and prints it, for scripts and hosts in other languages; quarry-config,
which shows and changes the station's seal.ini; and quarry-service, which
offers the dialogs on the D-Bus session bus.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION misc)
# quarry-service needs a session bus to be started by; quarry-viewer's
# reports a Chinese font whose PDF text can be searched.
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "dbus-session-bus, fonts-wqy-zenhei")
set(CPACK_DEBIAN_TOOLS_DEBUGINFO_PACKAGE ON)

if(TARGET docs)
    set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS libquarry-doc)
    set(CPACK_DEBIAN_DOC_DESCRIPTION "query conditions for seal-verification logs (API reference)
${QUARRY_ABOUT}

This package contains the reference of the library's programming interface
in HTML, for the developers of host applications.")
    set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
    set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
endif()

include(CPack)
