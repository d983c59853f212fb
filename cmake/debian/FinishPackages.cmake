# Run by cpack after it made the packages (CPACK_POST_BUILD_SCRIPTS), for
# what CPack's DEB generator cannot be told to do:
# - It gives a package with a library in /usr/lib a postinst and a postrm
#   that call ldconfig. Debian has the package activate the ldconfig
#   trigger instead, which the library's package does (its control file
#   "triggers"): the two scripts are taken out again. Its library lies in
#   the multiarch folder, so the package is Multi-Arch: same.
# - Its debug symbol packages list their files in md5sums by the absolute
#   paths of its working folder, and have no /usr/share/doc: the paths are
#   made relative, and the folder points to that of the package whose
#   symbols they hold, as Debian's own -dbgsym packages do.
# Each package changed is built anew from what it holds.

function(unpack package tree)
    file(REMOVE_RECURSE "${tree}")
    execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}"
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(repack tree package)
    execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}"
        OUTPUT_QUIET
        COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE "${tree}")
endfunction()

set(tree "${CPACK_TOPLEVEL_DIRECTORY}/finish")
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    cmake_path(GET package FILENAME name)
    if(name MATCHES "^${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}_.*\\.deb$")
        unpack("${package}" "${tree}")
        foreach(script IN ITEMS postinst postrm)
            file(READ "${tree}/DEBIAN/${script}" text)
            if(NOT text MATCHES "^#!/bin/sh\n+set -e\n+if \\[ \"\\$1\" = \"[a-z]+\" \\]; then\n\tldconfig\nfi\n*$")
                message(FATAL_ERROR "${package}: its ${script} does more than call ldconfig:\n${text}")
            endif()
            file(REMOVE "${tree}/DEBIAN/${script}")
        endforeach()
        file(READ "${tree}/DEBIAN/control" control)
        string(STRIP "${control}" control)
        file(WRITE "${tree}/DEBIAN/control" "${control}\nMulti-Arch: same\n")
        repack("${tree}" "${package}")
    elseif(name MATCHES "^(.*)-dbgsym_.*\\.ddeb$")
        set(owner ${CMAKE_MATCH_1})
        unpack("${package}" "${tree}")
        file(READ "${tree}/DEBIAN/md5sums" sums)
        string(REGEX REPLACE "  /[^\n]*/usr/lib/debug/" "  usr/lib/debug/" sums "${sums}")
        file(WRITE "${tree}/DEBIAN/md5sums" "${sums}")
        file(MAKE_DIRECTORY "${tree}/usr/share/doc")
        file(CREATE_LINK ${owner} "${tree}/usr/share/doc/${owner}-dbgsym" SYMBOLIC)
        repack("${tree}" "${package}")
    endif()
endforeach()
