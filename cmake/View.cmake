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

# Without lrelease the window is built with the texts in its sources only.
if(BUILD_VIEW)
  find_package(Qt${QT_MAJOR}LinguistTools QUIET)
endif()

# add_view_translations(TARGET LANGUAGE...): translations/cnet-view_LANGUAGE.ts as the resource
# :/translations/cnet-view_LANGUAGE.qm of a target, which begins with
# Q_INIT_RESOURCE(cnet_view_translations).
function(add_view_translations target)
  set(files "")
  set(entries "")
  if(TARGET Qt${QT_MAJOR}::lrelease)
    foreach(language ${ARGN})
      set(text ${PROJECT_SOURCE_DIR}/tools/view/translations/cnet-view_${language}.ts)
      set(file ${CMAKE_CURRENT_BINARY_DIR}/cnet-view_${language}.qm)
      add_custom_command(OUTPUT ${file} DEPENDS ${text} VERBATIM
        COMMAND Qt${QT_MAJOR}::lrelease -silent ${text} -qm ${file})
      list(APPEND files ${file})
      string(APPEND entries "<file alias=\"cnet-view_${language}.qm\">${file}</file>")
    endforeach()
  else()
    message(STATUS "cnet-view is built without translations: they need Qt's lrelease")
  endif()
  set(list ${CMAKE_CURRENT_BINARY_DIR}/cnet_view_translations.qrc)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/cnet_view_translations.cpp)
  file(CONFIGURE OUTPUT ${list} @ONLY
    CONTENT "<RCC><qresource prefix=\"/translations\">@entries@</qresource></RCC>\n")
  add_custom_command(OUTPUT ${source} DEPENDS ${list} ${files} VERBATIM
    COMMAND Qt${QT_MAJOR}::rcc --name cnet_view_translations --output ${source} ${list})
  set_source_files_properties(${source} PROPERTIES SKIP_AUTOGEN ON SKIP_PRECOMPILE_HEADERS ON)
  target_sources(${target} PRIVATE ${source})
endfunction()
