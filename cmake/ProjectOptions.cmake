# Warnings, sanitizers and Qt definitions that every target of the project shares.
add_library(project_options INTERFACE)

target_compile_options(project_options INTERFACE
  -Wall -Wextra -pedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
  # Older compilers, as used for panels, reject unknown warning options.
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_GREATER_EQUAL:${CMAKE_CXX_COMPILER_VERSION},6>>:-Wduplicated-cond>
  # The interface intentionally has a C-named function that returns QString by value.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-return-type-c-linkage>
  $<$<BOOL:${WARNINGS_AS_ERRORS}>:-Werror>)

target_compile_definitions(project_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)

if(SANITIZE)
  set(sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(project_options INTERFACE ${sanitizer_flags})
  target_link_options(project_options INTERFACE ${sanitizer_flags})
endif()

if(SANITIZE_THREADS)
  target_compile_options(project_options INTERFACE -fsanitize=thread)
  target_link_options(project_options INTERFACE -fsanitize=thread)
endif()

# Branches are reported to the fuzzer, and out-of-range accesses to lists abort it.
if(FUZZ)
  target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
  target_compile_definitions(project_options INTERFACE QT_FORCE_ASSERTS)
endif()

if(COVERAGE)
  target_compile_options(project_options INTERFACE --coverage -O0)
  target_link_options(project_options INTERFACE --coverage)
endif()

# Hundreds of tests are linked; the usual linker takes twice as long for each.
find_program(GOLD_LINKER ld.gold)
mark_as_advanced(GOLD_LINKER)
if(GOLD_LINKER AND BUILD_TESTING AND CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT CMAKE_CROSSCOMPILING)
  target_link_options(project_options INTERFACE -fuse-ld=gold)
endif()
