# Configures a project that takes this one in: its own checks are in its CMakeLists.txt.
cmake_policy(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR} -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DQV_PROJECT_DIR=${PROJECT_DIR} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

# Nothing of ours is installed with the outer project.
file(GLOB_RECURSE scripts "${WORK_DIR}/inner/*/cmake_install.cmake" "${WORK_DIR}/inner/cmake_install.cmake")
foreach(script IN LISTS scripts)
  file(STRINGS "${script}" rules REGEX "file\\(INSTALL")
  if(rules)
    message(FATAL_ERROR "${script} installs: ${rules}")
  endif()
endforeach()

# Objects are found again wherever the outer project is, since paths below ours are relative to our own directory.
if(EXISTS "${WORK_DIR}/CMakeFiles/rules.ninja")
  file(STRINGS "${WORK_DIR}/CMakeFiles/rules.ninja" commands REGEX "CCACHE_BASEDIR=")
  list(FILTER commands EXCLUDE REGEX "CCACHE_BASEDIR=${PROJECT_DIR} ")
  if(commands)
    list(GET commands 0 first)
    message(FATAL_ERROR "ccache has another base: ${first}")
  endif()
endif()
