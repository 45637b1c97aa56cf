# cmake -DNM=<nm> -DLIBRARY=<libsmbus.so> -P exports.cmake
execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}"
  OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} ${LIBRARY}: ${status}")
endif()
string(REGEX REPLACE " [^\n]*" "" names "${listing}")
string(STRIP "${names}" names)
if(NOT names STREQUAL "BoardName\nBoardTrouble\nDetectSmbus\nReadSmbus\nSmbusFailures\nWriteSmbus")
  message(FATAL_ERROR "${LIBRARY} exports:\n${names}")
endif()
