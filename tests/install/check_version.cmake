# Reads versions from headers: a good one, and those that must be refused. With HEADER it is the reading process.
cmake_policy(VERSION 3.25)

if(HEADER)
  include(${READER})
  qv_read_version(version ${HEADER})
  message(STATUS "version ${version}")
  return()
endif()

# The reading of a header with this text and these numbers must end with `result` and say `expected`.
function(expect result expected text)
  set(header "${WORK_DIR}/version.h")
  set(content "#define SCRIPTWELLS_VERSION \"${text}\"\n")
  foreach(line IN LISTS ARGN)
    string(APPEND content "#define SCRIPTWELLS_VERSION_${line}\n")
  endforeach()
  file(WRITE "${header}" "${content}")
  execute_process(COMMAND ${CMAKE_COMMAND} -DREADER=${READER} -DHEADER=${header} -P ${CMAKE_SCRIPT_MODE_FILE}
    RESULT_VARIABLE got OUTPUT_VARIABLE said ERROR_VARIABLE said)
  string(REGEX REPLACE "[ \n]+" " " said "${said}")
  string(FIND "${said}" "${expected}" place)
  if(place EQUAL -1 OR NOT got EQUAL result)
    message(FATAL_ERROR "\"${text}\" with ${ARGN} gave ${got}:\n${said}")
  endif()
endfunction()

expect(0 "version 10.20.30" "10.20.30" "MAJOR 10" "MINOR 20" "PATCH 30")
expect(1 "SCRIPTWELLS_VERSION is not \"1.2.4\"" "1.2.3" "MAJOR 1" "MINOR 2" "PATCH 4")
expect(1 "SCRIPTWELLS_VERSION is not \"1.2.3\"" "1.2" "MAJOR 1" "MINOR 2" "PATCH 3")
expect(1 "has no number SCRIPTWELLS_VERSION_MINOR" "1.2.3" "MAJOR 1" "PATCH 3")
expect(1 "has no number SCRIPTWELLS_VERSION_PATCH" "1.2.3" "MAJOR 1" "MINOR 2" "PATCH \"3\"")
