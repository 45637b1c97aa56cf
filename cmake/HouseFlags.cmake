# The warnings for every target of this project, and the sanitizers of the sanitize preset.
add_library(house_flags INTERFACE)
if(MSVC)
  target_compile_options(house_flags INTERFACE /W4 /permissive- /utf-8)
else()
  target_compile_options(house_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 wrongly reports overlapping or overflowing copies in std::operator+(const char*, std::string&&).
    target_compile_options(house_flags INTERFACE -Wno-restrict -Wno-stringop-overflow)
  endif()
endif()

if(ZTH_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
