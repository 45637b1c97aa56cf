# The resources of a program for Windows have a compiler that knows none of the warnings.
if(WIN32 AND NOT MSVC)
  get_target_property(warnings house_flags INTERFACE_COMPILE_OPTIONS)
  set_property(TARGET house_flags PROPERTY INTERFACE_COMPILE_OPTIONS "$<$<COMPILE_LANGUAGE:CXX>:${warnings}>")
endif()

# add_windows_resources(<program> <description>)
#
# The icon, the version and the manifest in a program's file. On other systems it does nothing.
function(add_windows_resources program description)
  if(NOT WIN32)
    return()
  endif()
  configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in" "${program}.rc" @ONLY)
  target_sources(${program} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${program}.rc")
  set_property(SOURCE "${CMAKE_CURRENT_BINARY_DIR}/${program}.rc" APPEND PROPERTY OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest;${ZTH_ICON_SHEETS}/program.ico")
endfunction()

# stand_alone(<target>)
#
# On Windows, a library or a program that needs nothing but the system: it may be loaded from a folder where the tool
# chain's libraries are not. On other systems it does nothing.
function(stand_alone target)
  if(NOT MINGW)
    return()
  endif()
  target_link_options(${target} PRIVATE -static)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # The entries' names without what the calling convention adds.
    target_link_options(${target} PRIVATE LINKER:--kill-at)
  endif()
endfunction()
