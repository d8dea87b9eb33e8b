# Fails unless the dynamic symbols that LIBRARY defines are exactly the lines of LIST.
execute_process(COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE symbols RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
endif()
string(REGEX REPLACE " [^\n]*" "" names "${symbols}")
string(REGEX MATCHALL "[^\n]+" names "${names}")
list(SORT names)
file(STRINGS ${LIST} expected)
list(SORT expected)
if(NOT names STREQUAL expected)
  message(FATAL_ERROR "exported: ${names}\nexpected: ${expected}")
endif()
