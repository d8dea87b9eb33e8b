# cnet-view as a desktop knows it: its entry, its icon, the files that it opens.
set(view_files ${PROJECT_SOURCE_DIR}/packaging/view)
install(TARGETS cnet-view RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT view)
install(FILES ${PROJECT_SOURCE_DIR}/doc/man/cnet-view.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT view)
install(FILES ${view_files}/cnet-view.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
  COMPONENT view)
install(FILES ${view_files}/cnet-view.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
  COMPONENT view)
install(FILES ${view_files}/cnet-view.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
  COMPONENT view)
