# cmake -DQUARRY_BUILD_DIR=... -DCONSUMER_SOURCE_DIR=... -DEXAMPLES_DIR=... -DWORK_DIR=... -DGENERATOR=... -DCXX=... -DLIBRARY_ARCHITECTURE=... -P CheckInstall.cmake
# Makes the Debian packages, checks them with lintian and apt-get, unpacks
# them into a folder of their own, and builds a small host against them
# twice, with the CMake package and with pkg-config, as a host developer on
# another machine would; then runs both.
# The host uses the compiler the library was built with: a sanitized library
# needs that compiler's sanitizer runtime.
# The host guide's examples are built and run there too, as far as they go
# without an operator, and the bus activates the packaged service by name.
file(REMOVE_RECURSE "${WORK_DIR}")
set(root "${WORK_DIR}/root")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
endfunction()

run(cpack -G DEB -B "${WORK_DIR}/packages" --config "${QUARRY_BUILD_DIR}/CPackConfig.cmake")
file(GLOB packages "${WORK_DIR}/packages/*.deb")
file(GLOB debug_packages "${WORK_DIR}/packages/*.ddeb")
list(TRANSFORM packages REPLACE ".*/([^/_]+)_[^/]*$" "\\1" OUTPUT_VARIABLE names)
list(TRANSFORM debug_packages REPLACE ".*/([^/_]+)_[^/]*$" "\\1" OUTPUT_VARIABLE debug_names)
if(NOT names STREQUAL "libquarry-dev;libquarry-doc;libquarry0;quarry-tools"
   OR NOT debug_names STREQUAL "libquarry0-dbgsym;quarry-tools-dbgsym")
    message(FATAL_ERROR "Expected libquarry0, libquarry-dev, quarry-tools, libquarry-doc and "
        "the -dbgsym of the first and the third, found: ${names};${debug_names}")
endif()

# Every package as Debian's tools judge it: a new error or warning fails.
run(lintian --fail-on error,warning --tag-display-limit 0 ${packages} ${debug_packages})
# What apt-get install ./*.deb would do, against the machine's packages.
run(apt-get install --simulate --no-install-recommends ${packages})

foreach(package IN LISTS packages)
    run(dpkg-deb -x "${package}" "${root}")
endforeach()
if(NOT EXISTS "${root}/usr/lib/${LIBRARY_ARCHITECTURE}/libquarry.so.0")
    message(FATAL_ERROR "The library is not in the multiarch folder /usr/lib/${LIBRARY_ARCHITECTURE}")
endif()
# The guides and the sample catalogue that the programs' help points to.
foreach(file IN ITEMS quarry-tools/administration.md.gz quarry-tools/examples/logs.ini
        libquarry-dev/host-guide.md.gz)
    if(NOT EXISTS "${root}/usr/share/doc/${file}")
        message(FATAL_ERROR "The packages do not hold /usr/share/doc/${file}")
    endif()
endforeach()
# man finds every program's page where the packages put them: the English
# one, and with the Chinese language the Chinese one, which groff sets
# without a warning. The locale is fixed, as a Chinese one would choose the
# Chinese pages by itself.
set(ENV{MANPATH} "${root}/usr/share/man")
set(man ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 man)
foreach(program IN ITEMS quarry-viewer quarry-ask quarry-config quarry-service)
    execute_process(COMMAND ${man} -P cat ${program} OUTPUT_VARIABLE page RESULT_VARIABLE result)
    if(NOT result EQUAL 0 OR NOT page MATCHES "NAME\n +${program} - ")
        message(FATAL_ERROR "man ${program} (${result}):\n${page}")
    endif()
    # groff 1.22.4's rules for Chinese loop for ever on a line that they
    # cannot break: such a page fails here, not at the test's own timeout.
    execute_process(COMMAND ${man} --warnings -L zh_CN -P cat ${program} TIMEOUT 60
        OUTPUT_VARIABLE page ERROR_VARIABLE warnings RESULT_VARIABLE result)
    if(NOT result EQUAL 0 OR NOT page MATCHES "名称\n +${program} - "
       OR NOT warnings STREQUAL "")
        message(FATAL_ERROR "man -L zh_CN ${program} (${result}):\n${warnings}\n${page}")
    endif()
endforeach()
file(GLOB_RECURSE pcfile "${root}/quarry.pc")
file(GLOB_RECURSE library "${root}/libquarry.so")
if(NOT pcfile OR NOT library)
    message(FATAL_ERROR "The -dev package holds no quarry.pc or libquarry.so")
endif()
get_filename_component(libdir "${library}" DIRECTORY)
get_filename_component(pcdir "${pcfile}" DIRECTORY)

run(${CMAKE_COMMAND} -S "${CONSUMER_SOURCE_DIR}" -B "${WORK_DIR}/cmake" -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${CXX}"
    "-DCMAKE_PREFIX_PATH=${root}/usr" "-DQUARRY_EXAMPLES_DIR=${EXAMPLES_DIR}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/cmake")

set(ENV{PKG_CONFIG_PATH} "${pcdir}")
execute_process(COMMAND pkg-config --cflags --libs quarry
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know quarry")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++20 "${CONSUMER_SOURCE_DIR}/main.cpp" -o "${WORK_DIR}/pkgconfig-consumer" ${flags})

set(ENV{LD_LIBRARY_PATH} "${libdir}")
run("${WORK_DIR}/cmake/consumer")
run("${WORK_DIR}/pkgconfig-consumer")

# The host guide's examples, for a log type that asks nothing (an operator
# would be needed for any other): the C++ host, and the shell host with the
# packaged quarry-ask.
file(WRITE "${WORK_DIR}/station/SEAL.INI" "[SBMK]\nDoubleSealQuota=0\n")
set(ENV{QUARRY_SYSTEM_DIR} "${WORK_DIR}/station")
execute_process(COMMAND "${WORK_DIR}/cmake/seal-verification-host" none.db YZXCLRZ
    RESULT_VARIABLE result)
if(NOT result EQUAL 1)
    message(FATAL_ERROR "The C++ example did not end as cancelled: ${result}")
endif()
set(ENV{PATH} "${root}/usr/bin:$ENV{PATH}")
execute_process(COMMAND bash "${EXAMPLES_DIR}/ask-seal-verifications.sh" none.db YZXCLRZ
    OUTPUT_VARIABLE out RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT out MATCHES "nothing asked for")
    message(FATAL_ERROR "The shell example failed (${result}): ${out}")
endif()

# The service, started by the bus by its name from the file quarry-tools
# installs, on a bus of the test's own, and the host guide's Python example
# as its client. The packaged file names the program where the package puts
# it; here that place is under the unpacked root.
set(service_file "${root}/usr/share/dbus-1/services/org.quarry.Quarry1.service")
file(STRINGS "${service_file}" exec REGEX "^Exec=")
if(NOT exec STREQUAL "Exec=/usr/bin/quarry-service")
    message(FATAL_ERROR "The packaged ${service_file} starts ${exec}")
endif()
file(READ "${service_file}" service)
string(REPLACE "Exec=/usr/" "Exec=${root}/usr/" service "${service}")
file(WRITE "${WORK_DIR}/services/org.quarry.Quarry1.service" "${service}")
# The bus's socket in /tmp: a socket's path holds at most 107 bytes, and the
# work folder may lie deep in a checkout.
file(WRITE "${WORK_DIR}/session.conf" "<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>${WORK_DIR}/services</servicedir>
  <policy context=\"default\"><allow send_destination=\"*\"/><allow own=\"*\"/></policy>
</busconfig>
")
# To files: the service would hold a pipe open until it ended.
execute_process(COMMAND dbus-run-session "--config-file=${WORK_DIR}/session.conf" --
        "${EXAMPLES_DIR}/ask-over-bus.py" YZXCLRZ
    OUTPUT_FILE "${WORK_DIR}/bus.out" ERROR_FILE "${WORK_DIR}/bus.err" RESULT_VARIABLE result)
if(NOT result EQUAL 1)
    file(READ "${WORK_DIR}/bus.err" err)
    message(FATAL_ERROR "The Python example did not end as cancelled: ${result}\n${err}")
endif()
file(REMOVE_RECURSE "${WORK_DIR}")
