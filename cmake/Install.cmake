# The installed files, in components: `library` is needed on a panel, `development` what a
# host of its own is built with, `host_development` what a program on the host library is built with,
# `tools` the programs, `gateway` cnet-gateway, `view` cnet-view, `wireshark` the dissector, `documents` what there is to read,
# and the examples.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ls_master_k_cnet)
set(generated ${PROJECT_BINARY_DIR}/package)

install(TARGETS ls_master_k_cnet
  EXPORT ls_master_k_cnet
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT library
    NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ls_master_k_cnet
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development
  FILES_MATCHING PATTERN "*.h")

install(EXPORT ls_master_k_cnet
  NAMESPACE ls_master_k_cnet::
  FILE ls_master_k_cnet-targets.cmake
  DESTINATION ${package_dir}
  COMPONENT development)
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/ls_master_k_cnet-config.cmake.in
  ${generated}/ls_master_k_cnet-config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  ${generated}/ls_master_k_cnet-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${generated}/ls_master_k_cnet-config.cmake
  ${generated}/ls_master_k_cnet-config-version.cmake
  DESTINATION ${package_dir}
  COMPONENT development)

# The prefix is relative to the file, so that the tree can be moved as a whole.
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" PREFIX_FROM_PKGCONFIG "${PREFIX_FROM_PKGCONFIG}")
if(QT_MAJOR EQUAL 4)
  set(QT_CORE_PKGCONFIG QtCore)
else()
  set(QT_CORE_PKGCONFIG Qt${QT_MAJOR}Core)
endif()
configure_file(
  ${PROJECT_SOURCE_DIR}/cmake/ls_master_k_cnet.pc.in ${generated}/ls_master_k_cnet.pc @ONLY)
install(FILES ${generated}/ls_master_k_cnet.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

install(FILES ${PROJECT_SOURCE_DIR}/doc/man/ls_master_k_cnet.3
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3
  COMPONENT development)
if(BUILD_TOOLS)
  include(cmake/InstallHost.cmake)
  install(FILES
    ${PROJECT_SOURCE_DIR}/doc/man/cnet-panel.1
    ${PROJECT_SOURCE_DIR}/doc/man/cnet-plc.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT tools)

  # Wireshark loads what is in its plugin folder, which is another one for each architecture.
  set(dissector_dir ${CMAKE_INSTALL_DATADIR}/cnet-wireshark)
  set(plugin_dir ${CMAKE_INSTALL_LIBDIR}/wireshark/plugins)
  install(FILES
    ${PROJECT_SOURCE_DIR}/wireshark/cnet.lua
    ${PROJECT_SOURCE_DIR}/wireshark/cnet_frame.lua
    DESTINATION ${dissector_dir}
    COMPONENT wireshark)
  file(RELATIVE_PATH dissector_link /${plugin_dir} /${dissector_dir})
  file(CREATE_LINK ${dissector_link} ${generated}/cnet SYMBOLIC)
  install(FILES ${generated}/cnet DESTINATION ${plugin_dir} COMPONENT wireshark)
  if(BUILD_GATEWAY)
    install(FILES ${PROJECT_SOURCE_DIR}/doc/man/cnet-gateway.1
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
      COMPONENT gateway)
    include(cmake/InstallGateway.cmake)
  endif()
  if(TARGET cnet-view)
    include(cmake/InstallView.cmake)
  endif()
endif()

# Laid out as in the sources, so that one document leads to the next.
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documents)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/doc
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documents
  PATTERN man EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documents
  PATTERN build EXCLUDE)
