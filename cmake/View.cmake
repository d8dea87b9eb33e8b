# cnet-view is built where Qwt for this Qt line is found: Debian has it for Qt 5.
set(BUILD_VIEW OFF)
if(NOT CMAKE_CROSSCOMPILING AND QT_MAJOR GREATER 4)
  find_package(Qt${QT_MAJOR} QUIET COMPONENTS Widgets Svg PrintSupport)
  find_path(QWT_INCLUDE qwt_plot.h PATH_SUFFIXES qwt qwt-qt${QT_MAJOR})
  find_library(QWT_LIBRARY NAMES qwt-qt${QT_MAJOR})
  mark_as_advanced(QWT_INCLUDE QWT_LIBRARY)
  if(TARGET Qt${QT_MAJOR}::Widgets AND TARGET Qt${QT_MAJOR}::Svg AND QWT_INCLUDE AND QWT_LIBRARY)
    set(BUILD_VIEW ON)
    add_library(qwt INTERFACE)
    # A system's header: the project's warnings are not for it.
    target_include_directories(qwt SYSTEM INTERFACE ${QWT_INCLUDE})
    target_link_libraries(qwt INTERFACE
      ${QWT_LIBRARY} Qt${QT_MAJOR}::Widgets Qt${QT_MAJOR}::Svg Qt${QT_MAJOR}::PrintSupport)
  else()
    message(STATUS "cnet-view is not built: it needs what script/bootstrap --view installs")
  endif()
endif()
