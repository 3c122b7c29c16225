# find_package with COMPONENTS, on a machine that lacks libraries. For check_installation.cmake, which sets `prefix`.

# Configures the project "platform" and gives what CMake said in `said`. The remaining arguments are options.
function(configure_platform wanted_result)
  file(REMOVE_RECURSE "${WORK_DIR}/platform")
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/platform -B ${WORK_DIR}/platform -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix} ${ARGN}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL wanted_result)
    message(FATAL_ERROR "find_package with ${ARGN} gave ${result}:\n${output}")
  endif()
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  set(said "${output}" PARENT_SCOPE)
endfunction()

function(expect_said expected)
  string(FIND "${said}" "${expected}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "find_package did not say \"${expected}\":\n${said}")
  endif()
endfunction()

set(without_xml -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=ON)
set(without_connections -DCMAKE_DISABLE_FIND_PACKAGE_CURL=ON)

configure_platform(1 ${without_xml})
expect_said("XercesC")
configure_platform(1 ${without_connections})
expect_said("CURL")
configure_platform(1 ${without_xml} "-DQV_COMPONENTS=COMPONENTS\;platform\;scriptwells")
expect_said("XercesC")
configure_platform(0 "-DQV_COMPONENTS=COMPONENTS\;platform\;testing")

configure_platform(1 "-DQV_COMPONENTS=COMPONENTS\;platfrom")
expect_said("QvScriptwells has no component \"platfrom\"; its components: platform, qvscriptwells, scriptwells, scriptwells-static, testing")
configure_platform(0 ${without_xml} ${without_connections}
  "-DQV_COMPONENTS=COMPONENTS\;platform\;OPTIONAL_COMPONENTS\;platfrom")

configure_platform(0 ${without_xml} ${without_connections} "-DQV_COMPONENTS=COMPONENTS\;platform"
  -DQV_HOST=${SOURCE_DIR}/late_host.cpp)
run_expecting("" ${CMAKE_COMMAND} --build ${WORK_DIR}/platform)
run_expecting("http://srv:8080\nQvScriptwells.QvScriptwells.1.0\nunloaded\n"
  ${CMAKE_COMMAND} -E env QV_REGISTRY=${prefix}/${LIBDIR}/quorvane/registry.reg ${WORK_DIR}/platform/late_host)
