# Warnings, sanitizers and Qt definitions that every target of the project shares.
add_library(project_options INTERFACE)

target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>
  # QString by value in a C-named function is the interface's own choice.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-return-type-c-linkage>
  $<$<BOOL:${WARNINGS_AS_ERRORS}>:-Werror>)

target_compile_definitions(project_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)

if(SANITIZE)
  set(sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(project_options INTERFACE ${sanitizer_flags})
  target_link_options(project_options INTERFACE ${sanitizer_flags})
endif()

if(COVERAGE)
  target_compile_options(project_options INTERFACE --coverage -O0)
  target_link_options(project_options INTERFACE --coverage)
endif()

# Qt 6 itself needs C++17; the driver asks for no more than C++11 of its own.
if(QT_MAJOR EQUAL 6)
  set(DRIVER_CXX_STANDARD 17)
else()
  set(DRIVER_CXX_STANDARD 11)
endif()
