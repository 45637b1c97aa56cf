# Headers of a package of this system that do not depend on the system. Its include folder as a whole must not be
# searched: there are the headers of its C library too.
function(add_headers target folder)
  set(headers "${CMAKE_BINARY_DIR}/headers/${folder}")
  file(MAKE_DIRECTORY "${headers}")
  if(NOT EXISTS "/usr/include/${folder}")
    message(FATAL_ERROR "no /usr/include/${folder}")
  endif()
  file(CREATE_LINK "/usr/include/${folder}" "${headers}/${folder}" SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} INTERFACE "${headers}")
endfunction()
