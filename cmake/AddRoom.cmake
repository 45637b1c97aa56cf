# add_room(<name> SOURCES <files> [USES <rooms or libraries>] [QT])
#
# One room of the program: a static library whose headers are included as "<name>/File.h". QT turns on moc and the
# shared precompiled header of the Qt rooms. With ZTH_UNITY four sources at a time are compiled as one; a source whose
# names clash with others' is marked with SKIP_UNITY_BUILD_INCLUSION where the room is made.
function(add_room name)
  cmake_parse_arguments(ROOM "QT" "" "SOURCES;USES" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ROOM_USES} PRIVATE house_flags)
  if(ZTH_UNITY)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 4)
  endif()
  if(ROOM_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    target_compile_definitions(${name} PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
    use_qt_precompiled_header(${name})
  endif()
endfunction()

# The Qt headers cost about a second per translation unit. They are compiled once and shared by every target with the
# same flags.
function(use_qt_precompiled_header target)
  if(NOT TARGET qt_precompiled)
    add_library(qt_precompiled STATIC "${PROJECT_SOURCE_DIR}/cmake/qt_precompiled.cpp")
    target_link_libraries(qt_precompiled PUBLIC Qt6::Widgets PRIVATE house_flags)
    target_compile_definitions(qt_precompiled PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
    target_precompile_headers(qt_precompiled PRIVATE "${PROJECT_SOURCE_DIR}/cmake/qt_precompiled.h")
  endif()
  target_precompile_headers(${target} REUSE_FROM qt_precompiled)
endfunction()
