# The order of the rooms, held by a test: cmake -DSRC=<src> -P room-order.cmake
#
# Reads every include of every room and ends with an error on one that points to a room it may not see, or that is not
# written as "room/File.h". docs/architecture.md draws the same table.
cmake_minimum_required(VERSION 3.22)

set(rooms base platform link chip widgets windows shell)
set(below_base)
set(below_platform base)
set(below_link base platform)
set(below_chip base platform link)
set(below_widgets base platform)
set(below_windows base platform link chip widgets)
set(below_shell base platform link chip widgets windows)

foreach(room IN LISTS rooms)
  file(GLOB_RECURSE files "${SRC}/${room}/*.h" "${SRC}/${room}/*.cpp")
  if(NOT files)
    message(SEND_ERROR "no sources in room ${room}: is SRC=${SRC} right?")
  endif()
  foreach(file IN LISTS files)
    file(STRINGS "${file}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    foreach(line IN LISTS lines)
      if(NOT line MATCHES "^[ \t]*#[ \t]*include[ \t]*\"([A-Za-z0-9_]+)/")
        message(SEND_ERROR "${file}: not written as \"room/File.h\": ${line}")
      elseif(NOT CMAKE_MATCH_1 STREQUAL room AND NOT CMAKE_MATCH_1 IN_LIST below_${room})
        message(SEND_ERROR "${file}: room ${room} may not see ${CMAKE_MATCH_1}: ${line}")
      endif()
    endforeach()
  endforeach()
endforeach()
