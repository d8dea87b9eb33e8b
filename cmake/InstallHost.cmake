# The host library, for programs that are built elsewhere. Its headers are listed in host/CMakeLists.txt.
set(host_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cnet_host)

install(TARGETS cnet_host cnet_capture
  EXPORT cnet_host
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT host_development)
install(EXPORT cnet_host
  NAMESPACE cnet::
  FILE cnet_host-targets.cmake
  DESTINATION ${host_package_dir}
  COMPONENT host_development)
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/cnet_host-config.cmake.in
  ${generated}/cnet_host-config.cmake
  INSTALL_DESTINATION ${host_package_dir})
write_basic_package_version_file(
  ${generated}/cnet_host-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${generated}/cnet_host-config.cmake
  ${generated}/cnet_host-config-version.cmake
  DESTINATION ${host_package_dir}
  COMPONENT host_development)

configure_file(${PROJECT_SOURCE_DIR}/cmake/cnet_host.pc.in ${generated}/cnet_host.pc @ONLY)
install(FILES ${generated}/cnet_host.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT host_development)
