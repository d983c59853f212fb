# cmake -DQUARRY_BUILD_DIR=... -DCONSUMER_SOURCE_DIR=... -DWORK_DIR=... -DGENERATOR=... -P CheckInstall.cmake
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install "${QUARRY_BUILD_DIR}" --prefix "${prefix}")
run(${CMAKE_COMMAND} -S "${CONSUMER_SOURCE_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/consumer")
file(REMOVE_RECURSE "${WORK_DIR}")
