# Installs the headers, the libraries with their CMake package and pkg-config files, the library of classes, and the
# registry file that names the library and the home directory. Each component is a package of a distribution: runtime
# (the shared library), server (the library of classes), registry, development; program and service are in tools/.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QvScriptwells)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/scriptwells ${PROJECT_SOURCE_DIR}/include/qvscriptwells
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN "*.h")
install(TARGETS qvscriptwells scriptwells_archive scriptwells_testing EXPORT QvScriptwellsTargets
  ARCHIVE COMPONENT development)
# Its own set: it needs neither the XML library nor libcurl (QvScriptwellsConfig.cmake).
install(TARGETS qvplatform EXPORT QvScriptwellsPlatformTargets ARCHIVE COMPONENT development)
if(TARGET scriptwells_library)
  install(TARGETS scriptwells_library EXPORT QvScriptwellsTargets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
endif()
if(QV_BUILD_CLASS_LIBRARY)
  # Without the name that linkers look for: "-lqvscriptwells" is the archive, and nothing links this library.
  install(TARGETS qvscriptwells_shared LIBRARY NAMELINK_SKIP COMPONENT server)
endif()
foreach(set QvScriptwellsTargets QvScriptwellsPlatformTargets)
  install(EXPORT ${set} NAMESPACE QvScriptwells:: DESTINATION ${package_dir} COMPONENT development)
endforeach()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QvScriptwellsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QvScriptwellsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfig.cmake
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# A pkg-config file names a directory relative to its own path, so that the prefix may move. An absolute directory stays
# absolute.
function(pkgconfig_directory result directory)
  set(path "${directory}")
  if(NOT IS_ABSOLUTE "${directory}" AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    string(PREPEND path "\${pcfiledir}/")
  elseif(NOT IS_ABSOLUTE "${directory}")
    cmake_path(ABSOLUTE_PATH path BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
  endif()
  set(${result} "${path}" PARENT_SCOPE)
endfunction()

pkgconfig_directory(QV_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
pkgconfig_directory(QV_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
foreach(package scriptwells qvscriptwells qvplatform)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endforeach()

# The registry file holds the prefix, which is known for sure only when the installation runs.
set(QV_LIBDIR ${CMAKE_INSTALL_LIBDIR})
set(QV_DATADIR ${CMAKE_INSTALL_DATADIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/install_registry.cmake.in
  ${PROJECT_BINARY_DIR}/install_registry.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/install_registry.cmake COMPONENT registry)

# A project that takes this one in may have a target of this name.
if(NOT TARGET uninstall)
  add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -DBUILD_DIR=${PROJECT_BINARY_DIR} -P ${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake
    COMMENT "Removing what was installed from here" VERBATIM)
endif()
