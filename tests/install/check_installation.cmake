# Installs what was built to a fresh prefix, then configures, builds and runs a project that knows only the
# prefix.
cmake_policy(VERSION 3.25)

# Stops the test when the command fails or prints something else.
function(run_expecting expected)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0 OR (expected AND NOT output STREQUAL "${expected}"))
    message(FATAL_ERROR "${ARGN} gave ${result}:\n${output}")
  endif()
endfunction()

# What a developer needs, and the rest.
set(components_of_libraries runtime server registry development)
set(components_of_programs program service)

function(install_components)
  foreach(component IN LISTS ARGN)
    run_expecting("" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} --component ${component})
  endforeach()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

# A file without a component would be in no package.
install_components(Unspecified)
file(GLOB_RECURSE homeless "${prefix}/*")
if(homeless)
  message(FATAL_ERROR "These have no component: ${homeless}")
endif()

install_components(${components_of_libraries})

run_expecting("" ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/host -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release -DWANTED_VERSION=${VERSION})
run_expecting("" ${CMAKE_COMMAND} --build ${WORK_DIR}/host)

set(registry "${prefix}/${LIBDIR}/quorvane/registry.reg")
set(with_registry ${CMAKE_COMMAND} -E env QV_REGISTRY=${registry})
run_expecting("caption\nhome ${prefix}/${DATADIR}/quorvane\n" ${with_registry} ${WORK_DIR}/host/typed_host)
run_expecting("http://srv:8080\nQvScriptwells.QvScriptwells.1.0\nunloaded\n"
  ${with_registry} ${WORK_DIR}/host/late_host)

foreach(host IN ITEMS face_host static_face_host)
  run_expecting("${VERSION} connect\n" ${WORK_DIR}/host/${host})
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/check_components.cmake)

# What the library itself writes is what the installation has written.
file(READ "${registry}" installed)
run_expecting("" ${with_registry} ${WORK_DIR}/host/register_library ${prefix}/${LIBDIR}/libqvscriptwells.so.1)
file(READ "${registry}" registered)
if(NOT registered STREQUAL installed)
  message(FATAL_ERROR "Registration changed ${registry} from\n${installed}\nto\n${registered}")
endif()

# The file is the installation's: what an administrator wants otherwise is in another one.
file(APPEND "${registry}" "; mine\n")
install_components(registry)
file(READ "${registry}" replaced)
if(NOT replaced STREQUAL installed)
  message(FATAL_ERROR "${registry} was not replaced:\n${replaced}")
endif()

# The other way in.
foreach(program IN ITEMS typed_host:qvscriptwells late_host:qvplatform)
  string(REPLACE ":" ";" program ${program})
  list(GET program 0 source)
  list(GET program 1 package)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig
    pkg-config --cflags --libs ${package} OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run_expecting("" ${CXX_COMPILER} -std=c++17 ${SOURCE_DIR}/${source}.cpp -o ${WORK_DIR}/${source} ${flags})
  run_expecting("" ${with_registry} ${WORK_DIR}/${source})
endforeach()

# "--static" links the archive where there is no shared library.
foreach(form IN ITEMS shared static)
  if(form STREQUAL static)
    set(flag --static)
    file(RENAME "${prefix}/${LIBDIR}/libscriptwells.so" "${WORK_DIR}/libscriptwells.so")
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig
    pkg-config --cflags --libs ${flag} scriptwells OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run_expecting("" ${CXX_COMPILER} -std=c++17 ${SOURCE_DIR}/face_host.cpp -o ${WORK_DIR}/face_${form} ${flags})
  run_expecting("${VERSION} connect\n" ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIBDIR} ${WORK_DIR}/face_${form})
endforeach()
file(RENAME "${WORK_DIR}/libscriptwells.so" "${prefix}/${LIBDIR}/libscriptwells.so")

# The prefix may move, and the files of pkg-config with it.
set(moved "${WORK_DIR}/moved prefix")
file(RENAME "${prefix}" "${moved}")
foreach(package IN ITEMS scriptwells qvscriptwells qvplatform)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${moved}/${LIBDIR}/pkgconfig
    pkg-config --variable=includedir ${package} OUTPUT_VARIABLE include OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  # pkg-config puts a backslash before a blank.
  string(REPLACE "\\" "" include "${include}")
  if(NOT EXISTS "${include}/qvscriptwells/variant.h")
    message(FATAL_ERROR "${package}.pc names ${include} after a move to ${moved}")
  endif()
  run_expecting("${VERSION}\n" ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${moved}/${LIBDIR}/pkgconfig
    pkg-config --modversion ${package})
endforeach()
file(RENAME "${moved}" "${prefix}")

# What an administrator wrote stays, and nothing else does.
file(WRITE "${prefix}/etc/quorvane/registry.reg" "; mine\n")
run_expecting("" ${CMAKE_COMMAND} -DBUILD_DIR=${BUILD_DIR} -P ${UNINSTALL})
file(GLOB_RECURSE left "${prefix}/*")
if(NOT left STREQUAL "${prefix}/etc/quorvane/registry.reg")
  message(FATAL_ERROR "Uninstalling left ${left}")
endif()
file(REMOVE_RECURSE "${prefix}/etc")

# Without the service's part the program says what is missing.
install_components(${components_of_libraries} program)
foreach(command IN ITEMS "run;--local;-e;1" serve)
  execute_process(COMMAND "${prefix}/bin/scriptwells" ${command} RESULT_VARIABLE result ERROR_VARIABLE said)
  if(NOT result EQUAL 6 OR NOT said MATCHES "install the package scriptwells-service")
    message(FATAL_ERROR "Without the service, ${command} gave ${result}:\n${said}")
  endif()
endforeach()
install_components(service)

# The program finds its libraries and its worker, also after a move.
file(RENAME "${prefix}" "${moved}")
run_expecting("42\n" "${moved}/bin/scriptwells" run --local -e "6 * 7")
run_expecting("42 1\n" ${CMAKE_COMMAND} -E env SCRIPTWELLS_PROGRAM=${moved}/bin/scriptwells
  LD_LIBRARY_PATH=${moved}/${LIBDIR} ${WORK_DIR}/host/tested_host)
execute_process(COMMAND "${moved}/bin/scriptwells" session close --server http://127.0.0.1:1 --usid 1 ERROR_VARIABLE said)
if(NOT said MATCHES "cannot reach")
  message(FATAL_ERROR "A call after the move said:\n${said}")
endif()
foreach(needed IN ITEMS ${LIBDIR}/quorvane/scriptwells-commands.so ${LIBDIR}/quorvane/scriptwells-service.so
    ${LIBDIR}/quorvane/scriptwells-shell.so ${LIBDIR}/quorvane/scriptwells-local-shell.so
    ${LIBDIR}/quorvane/scriptwells-xml.so ${LIBEXECDIR}/quorvane/scriptwells-script-worker)
  if(NOT EXISTS "${moved}/${needed}")
    message(FATAL_ERROR "${needed} is not installed")
  endif()
endforeach()
file(RENAME "${moved}" "${prefix}")

run_expecting("" ${CMAKE_COMMAND} -DBUILD_DIR=${BUILD_DIR} -P ${UNINSTALL})
file(GLOB_RECURSE left "${prefix}/*")
if(left)
  message(FATAL_ERROR "Uninstalling left ${left}")
endif()
foreach(directory IN ITEMS include/qvscriptwells include/scriptwells ${LIBDIR}/cmake/QvScriptwells ${LIBDIR}/quorvane
    ${LIBEXECDIR}/quorvane)
  if(EXISTS "${prefix}/${directory}")
    message(FATAL_ERROR "Uninstalling left the empty directory ${directory}")
  endif()
endforeach()
