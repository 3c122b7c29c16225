# Configures a build for a prefix, installs it there as a whole, and runs hosts that know no variable. Then a host
# without the installation says where it looked.
cmake_policy(VERSION 3.25)

# The output of a command that must succeed, or fail.
function(run result_variable wanted_result)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if((wanted_result STREQUAL "ok") STREQUAL (NOT result EQUAL 0))
    message(FATAL_ERROR "${ARGN} gave ${result}:\n${output}")
  endif()
  set(${result_variable} "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
run(ignored ok ${CMAKE_COMMAND} -S ${PROJECT_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_INSTALL_PREFIX=${prefix}
  -DQV_BUILD_TESTS=OFF -DQV_BUILD_TOOLS=OFF)
run(ignored ok ${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(ignored ok ${CMAKE_COMMAND} --install ${WORK_DIR}/build)
run(ignored ok ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/host -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix})
run(ignored ok ${CMAKE_COMMAND} --build ${WORK_DIR}/host --target late_host)

set(bare ${CMAKE_COMMAND} -E env --unset=QV_REGISTRY XDG_CONFIG_HOME=${WORK_DIR}/none)
run(output ok ${bare} ${WORK_DIR}/host/late_host)
if(NOT output STREQUAL "http://srv:8080\nQvScriptwells.QvScriptwells.1.0\nunloaded\n")
  message(FATAL_ERROR "late_host said ${output}")
endif()

run(ignored ok ${CMAKE_COMMAND} --build ${WORK_DIR}/build --target uninstall)
load_cache("${WORK_DIR}/build" READ_WITH_PREFIX built_ CMAKE_INSTALL_LIBDIR)
run(output failed ${bare} ${WORK_DIR}/host/late_host)
string(CONCAT expected "0x800401F3 The registry knows no class named \"QvScriptwells.QvScriptwells\"; looked in "
  "${WORK_DIR}/none/quorvane/registry.reg (not there), ${prefix}/etc/quorvane/registry.reg (not there), "
  "${prefix}/${built_CMAKE_INSTALL_LIBDIR}/quorvane/registry.reg (not there); "
  "the variable QV_REGISTRY names a file that is read first\n")
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "late_host said ${output}")
endif()
