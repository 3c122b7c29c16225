# What an installation has: the headers, both archives with their CMake package and pkg-config files, the
# library of classes, and the registry file that names it and the home directory.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QvScriptwells)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qvscriptwells DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development)
install(TARGETS qvscriptwells qvplatform EXPORT QvScriptwellsTargets ARCHIVE COMPONENT development)
# Without the name that linkers look for: "-lqvscriptwells" is the archive, and nothing links this library.
install(TARGETS qvscriptwells_shared LIBRARY NAMELINK_SKIP COMPONENT development)
install(EXPORT QvScriptwellsTargets NAMESPACE QvScriptwells:: DESTINATION ${package_dir}
  COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QvScriptwellsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QvScriptwellsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfig.cmake
  ${PROJECT_BINARY_DIR}/QvScriptwellsConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The files below hold the prefix, which is known for sure only when the installation runs.
set(QV_LIBDIR ${CMAKE_INSTALL_LIBDIR})
set(QV_DATADIR ${CMAKE_INSTALL_DATADIR})
set(QV_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/install_prefixed.cmake.in
  ${PROJECT_BINARY_DIR}/install_prefixed.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/install_prefixed.cmake COMPONENT development)
