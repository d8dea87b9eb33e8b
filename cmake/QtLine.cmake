# Finds the major version of Qt given by QT_MAJOR. Whatever its own target names are, Core is
# Qt<major>::Core and Test is Qt<major>::Test here.
set_property(CACHE QT_MAJOR PROPERTY STRINGS 4 5 6)

if(QT_MAJOR EQUAL 4)
  # Qt 4.8 is enough for the driver and its tests; the tools need a newer Qt.
  set(BUILD_TOOLS OFF)
  set(CMAKE_CXX_STANDARD 11) # its headers are not valid C++17
  set(modules Core)
  if(BUILD_TESTING)
    list(APPEND modules Test)
  endif()
  list(TRANSFORM modules PREPEND Qt OUTPUT_VARIABLE components)
  find_package(Qt4 4.8 REQUIRED ${components})
  set(QT_CORE_SONAME libQtCore.so.4)
  set(QT_CORE_FOLDER ${QT_LIBRARY_DIR})
  foreach(module IN LISTS modules)
    add_library(Qt4::${module} INTERFACE IMPORTED)
    target_link_libraries(Qt4::${module} INTERFACE Qt4::Qt${module})
  endforeach()
else()
  find_package(Qt${QT_MAJOR} REQUIRED COMPONENTS Core)
  set(QT_CORE_SONAME $<TARGET_SONAME_FILE_NAME:Qt${QT_MAJOR}::Core>)
  set(QT_CORE_FOLDER $<TARGET_FILE_DIR:Qt${QT_MAJOR}::Core>)
  if(BUILD_TOOLS)
    find_package(Qt${QT_MAJOR} REQUIRED COMPONENTS Network SerialPort)
  endif()
  if(BUILD_TESTING)
    find_package(Qt${QT_MAJOR} REQUIRED COMPONENTS Test)
  endif()
endif()

# Qt 6 needs C++17; the driver itself only needs C++11.
if(QT_MAJOR EQUAL 6)
  set(DRIVER_CXX_STANDARD 17)
else()
  set(DRIVER_CXX_STANDARD 11)
endif()
