# add_room(<name> SOURCES <files> [USES <rooms or libraries>] [CORE | QT])
#
# One room of the program, or a part of one: a static library whose headers are included as "<room>/File.h". CORE is for
# a room that works without a display: it links Qt Core and nothing else of Qt. QT links Qt Widgets and turns on moc.
# Each kind has a shared precompiled header. With ZTH_UNITY four sources at a time are compiled as one; a source whose
# names clash with others' is marked with SKIP_UNITY_BUILD_INCLUSION where the room is made.
function(add_room name)
  cmake_parse_arguments(ROOM "CORE;QT" "" "SOURCES;USES" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ROOM_USES} PRIVATE house_flags)
  if(ZTH_UNITY)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 4)
  endif()
  if(ROOM_CORE)
    use_precompiled_header(${name} Core)
  elseif(ROOM_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    use_precompiled_header(${name} Widgets)
  endif()
endfunction()

# The Qt headers cost about a second per translation unit. They are compiled once and shared by every target with the
# same flags. `part` is Core or Widgets.
function(use_precompiled_header target part)
  string(TOLOWER "qt_precompiled_${part}" shared)
  if(NOT TARGET ${shared})
    add_library(${shared} STATIC "${PROJECT_SOURCE_DIR}/cmake/qt_precompiled.cpp")
    target_link_libraries(${shared} PUBLIC Qt6::${part} PRIVATE house_flags)
    target_compile_definitions(${shared} PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
    target_precompile_headers(${shared} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/${shared}.h")
  endif()
  target_link_libraries(${target} PUBLIC Qt6::${part})
  target_compile_definitions(${target} PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
  target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()
