# cnet-gateway as a service: how it is configured, who it runs as, and how it is started.
set(gateway_files ${PROJECT_SOURCE_DIR}/packaging/gateway)
install(FILES ${PROJECT_SOURCE_DIR}/doc/man/cnet-gateway.toml.5
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man5
  COMPONENT gateway)
install(FILES ${gateway_files}/gateway.toml
  DESTINATION ${CMAKE_INSTALL_SYSCONFDIR}/cnet-gateway
  COMPONENT gateway)
install(FILES ${PROJECT_SOURCE_DIR}/examples/press/tags.csv
  DESTINATION ${CMAKE_INSTALL_SYSCONFDIR}/cnet-gateway
  RENAME press.csv
  COMPONENT gateway)
configure_file(${gateway_files}/cnet-gateway.service.in ${generated}/cnet-gateway.service @ONLY)
install(FILES ${generated}/cnet-gateway.service
  DESTINATION lib/systemd/system
  COMPONENT gateway)
install(FILES ${gateway_files}/sysusers.conf
  DESTINATION lib/sysusers.d
  RENAME cnet-gateway.conf
  COMPONENT gateway)
