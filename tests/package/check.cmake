# Installs the package into a folder of its own, builds examples/host against it and runs it:
#   cmake -DBUILD= -DSOURCE= -DWORK= -DMODULE= -DVELORA= -P check.cmake
function(run out)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text ERROR_VARIABLE errors
    RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}: ${status}\n${text}${errors}")
  endif()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(ignored ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix --component development)
run(ignored ${CMAKE_COMMAND} -S ${SOURCE}/examples/host -B ${WORK}/build
  -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_BUILD_TYPE=Release)
run(ignored ${CMAKE_COMMAND} --build ${WORK}/build)

# Every part of the catalogue, in any order of letters' case.
set(parts K668D121 L668H080 L647H001 k664a100 VM0A032)
run(told ${WORK}/build/host ${MODULE} ${parts})
list(JOIN parts "\n" wanted)
if(NOT told STREQUAL "${wanted}\n")
  message(FATAL_ERROR "the host printed:\n${told}")
endif()

run(told ${WORK}/build/levels ${SOURCE}/examples/sounds/hello-world.wav)
if(NOT told MATCHES "^[1-9][0-9]* frames\n0 51 102 153 204 \n$")
  message(FATAL_ERROR "levels printed:\n${told}")
endif()
