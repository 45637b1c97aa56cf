# Checks that a library exports exactly what is EXPECTED: cmake -DNM= -DLIBRARY= -DEXPECTED= -P exports.cmake
cmake_minimum_required(VERSION 3.22)

execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" exported "${listing}")
list(TRANSFORM exported STRIP)
list(SORT exported)
list(SORT EXPECTED)
if(NOT exported STREQUAL EXPECTED)
  message(FATAL_ERROR "${LIBRARY} exports '${exported}' and not '${EXPECTED}'")
endif()
