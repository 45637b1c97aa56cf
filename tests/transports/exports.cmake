# cmake -DNM=<nm> -DLIBRARY=<file> -DNAMES=<names, sorted, with a blank between> -P exports.cmake
execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}"
  OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} ${LIBRARY}: ${status}")
endif()
string(REGEX REPLACE " [^\n]*" "" names "${listing}")
string(STRIP "${names}" names)
string(REPLACE "\n" " " names "${names}")
if(NOT names STREQUAL NAMES)
  message(FATAL_ERROR "${LIBRARY} exports:\n${names}")
endif()
