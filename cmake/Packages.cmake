# The Debian packages, one per component of the installation. Built by script/package.
if(NOT PROJECT_SOURCE_DIR STREQUAL CMAKE_SOURCE_DIR)
  return() # part of another project, which has its own packages
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ls-master-k-cnet)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "ls_master_k_cnet maintainers <maintainers@ls-master-k-cnet.invalid>"
  CACHE STRING "Maintainer of the packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development documents)
if(BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL host_development tools wireshark)
endif()
set(gateway_package "")
if(BUILD_GATEWAY)
  list(APPEND CPACK_COMPONENTS_ALL gateway)
  set(gateway_package "gateway cnet-gateway")
endif()
set(view_package "")
if(BUILD_VIEW)
  list(APPEND CPACK_COMPONENTS_ALL view)
  set(view_package "view cnet-view")
endif()

set(library_package libls-master-k-cnet${PROJECT_VERSION_MAJOR})
set(documents_package ls-master-k-cnet-doc)
set(release 1)
set(qt_development_4 libqt4-dev)
set(qt_development_5 qtbase5-dev)
set(qt_development_6 qt6-base-dev)
set(qt_development ${qt_development_${QT_MAJOR}})
set(serial_development_5 libqt5serialport5-dev)
set(serial_development_6 qt6-serialport-dev)
set(serial_development ${serial_development_${QT_MAJOR}})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${CPACK_PACKAGE_NAME})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${release})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# The first line of a description is the synopsis of the package; CPack must not add one.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(what_it_is
"The driver connects operator panels to MASTER-K programmable controllers
over their Cnet computer link. A panel's runtime says which addresses its
screens use; the driver merges them into few block reads, builds and decodes
the frames, keeps the values, reports changes and schedules writes.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
"MASTER-K Cnet communication driver for operator panels
${what_it_is}

This package contains the shared library that panels load.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libls-master-k-cnet-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library_package} (= ${PROJECT_VERSION}-${release}), ${qt_development}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"MASTER-K Cnet communication driver for operator panels - development files
${what_it_is}

This package contains what a host is built with: headers, files for CMake and
pkg-config, and the manual page of the functions.")

set(CPACK_DEBIAN_HOST_DEVELOPMENT_PACKAGE_NAME libcnet-host-dev)
set(CPACK_DEBIAN_HOST_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The library is part of each program that is built with it; the driver is loaded at run time.
set(CPACK_DEBIAN_HOST_DEVELOPMENT_PACKAGE_DEPENDS
  "${library_package} (= ${PROJECT_VERSION}-${release}), ${qt_development}, ${serial_development}")
set(CPACK_DEBIAN_HOST_DEVELOPMENT_PACKAGE_SUGGESTS ${documents_package})
set(CPACK_DEBIAN_HOST_DEVELOPMENT_DESCRIPTION
"sessions with MASTER-K controllers - development files
The cnet_host library is what programs stand on that watch, read and write
values of MASTER-K programmable controllers over their Cnet computer link. It
loads the ls_master_k_cnet driver, opens the line and keeps it open, tells how
far each value can be trusted, and how each write has ended.

This package contains the static library, its headers, and files for CMake and
pkg-config.")

set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_NAME ${documents_package})
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTS_DESCRIPTION
"MASTER-K Cnet communication driver for operator panels - documentation
${what_it_is}

This package contains the documents, the sources of two example programs, and
tags, recipes and a capture of the press that cnet-plc simulates.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME cnet-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
# The panel loads the library at run time, so the program itself has no dependency on it.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION}-${release})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS cnet-wireshark)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
"look into MASTER-K controllers from the command line
cnet-panel watches, reads and writes the values of MASTER-K programmable
controllers over their Cnet computer link, at a serial line or a TCP port,
and transfers recipes. It loads the ls_master_k_cnet driver as a panel does.

cnet-plc is a simulated controller that answers the same link and injects
faults on demand, for trying panels without a machine behind them.")

set(CPACK_DEBIAN_WIRESHARK_PACKAGE_NAME cnet-wireshark)
set(CPACK_DEBIAN_WIRESHARK_PACKAGE_SECTION net)
set(CPACK_DEBIAN_WIRESHARK_PACKAGE_RECOMMENDS "wireshark | tshark")
set(CPACK_DEBIAN_WIRESHARK_PACKAGE_ENHANCES "wireshark, tshark")
set(CPACK_DEBIAN_WIRESHARK_DESCRIPTION
"MASTER-K Cnet in Wireshark
This dissector takes the frames of the Cnet computer link apart, in captures
of cnet-panel and cnet-plc and in TCP streams. It joins requests and answers,
names the addresses of values, and marks wrong block checks, refusals, missing
answers and whatever else goes wrong on a line.")
set(CPACK_DEBIAN_GATEWAY_PACKAGE_NAME cnet-gateway)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION}-${release}), \
systemd | systemd-standalone-sysusers | systemd-sysusers")
set(gateway_scripts ${PROJECT_SOURCE_DIR}/packaging/gateway)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_CONTROL_EXTRA
  ${gateway_scripts}/conffiles ${gateway_scripts}/postinst ${gateway_scripts}/prerm
  ${gateway_scripts}/postrm)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_SUGGESTS "cnet-tools, ${documents_package}")
set(CPACK_DEBIAN_GATEWAY_DESCRIPTION
"bring the values of MASTER-K controllers to one place
cnet-gateway watches tags of MASTER-K programmable controllers on many lines
of their Cnet computer link and stores each change, with its time and quality,
in an SQLite file. What it has taken survives a crash and a full disk. It
loads the ls_master_k_cnet driver as a panel does.")
set(CPACK_DEBIAN_VIEW_PACKAGE_NAME cnet-view)
set(CPACK_DEBIAN_VIEW_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_VIEW_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_VIEW_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION}-${release})")
# The words of Qt's own dialogs; those of the window are in the program.
set(CPACK_DEBIAN_VIEW_PACKAGE_RECOMMENDS qttranslations5-l10n)
set(CPACK_DEBIAN_VIEW_PACKAGE_SUGGESTS "cnet-tools, ${documents_package}")
set(CPACK_DEBIAN_VIEW_DESCRIPTION
"window on MASTER-K controllers, for commissioning
cnet-view shows the values of MASTER-K programmable controllers over their
Cnet computer link as they change, draws trends, explains the frames on the
line, writes values and recipes, and finds stations. It simulates a press
line, for trying it without a controller.")

# Files that only Debian requires.
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian_files.cmake.in
  ${PROJECT_BINARY_DIR}/package/debian_files.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/package/debian_files.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/ldconfig_trigger.cmake)

include(CPack)
