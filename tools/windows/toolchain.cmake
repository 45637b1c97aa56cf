# CMake tool chain: Windows, by Debian's MinGW-w64. ZTH_WINDOWS_TARGET is x86_64 or i686.
if(NOT ZTH_WINDOWS_TARGET)
  set(ZTH_WINDOWS_TARGET "$ENV{ZTH_WINDOWS_TARGET}")
endif()
if(NOT ZTH_WINDOWS_TARGET MATCHES "^(x86_64|i686)$")
  message(FATAL_ERROR "ZTH_WINDOWS_TARGET is \"${ZTH_WINDOWS_TARGET}\", and not x86_64 or i686")
endif()
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZTH_WINDOWS_TARGET ZTH_WINDOWS_QT)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${ZTH_WINDOWS_TARGET})
set(ZTH_WINDOWS_TRIPLE "${ZTH_WINDOWS_TARGET}-w64-mingw32")
# The variant with posix threads: the other one's standard library has no std::thread and no std::mutex.
set(CMAKE_C_COMPILER "${ZTH_WINDOWS_TRIPLE}-gcc-posix")
set(CMAKE_CXX_COMPILER "${ZTH_WINDOWS_TRIPLE}-g++-posix")
set(CMAKE_RC_COMPILER "${ZTH_WINDOWS_TRIPLE}-windres")

# Programs come from this system, everything else from the target's folders: a header of this system's C library that
# slipped in would compile and be wrong.
list(APPEND CMAKE_FIND_ROOT_PATH "/usr/${ZTH_WINDOWS_TRIPLE}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The program's other packages. ZTH_WINDOWS_QT is what tools/windows/build-qt has printed; Qt itself is built without it.
if(ZTH_WINDOWS_QT)
  list(APPEND CMAKE_FIND_ROOT_PATH "${ZTH_WINDOWS_QT}")
  list(APPEND CMAKE_PREFIX_PATH "${ZTH_WINDOWS_QT}")
  foreach(package CLI11 nlohmann_json GTest)
    set(${package}_DIR "${CMAKE_CURRENT_LIST_DIR}/packages")
  endforeach()
  # moc and rcc run on this system, whose rcc would compress in a way that the other Qt was built without.
  set(CMAKE_AUTORCC_OPTIONS --no-zstd)
  set(QT_HOST_PATH /usr)
  file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*/cmake/Qt6HostInfo)
  list(TRANSFORM QT_HOST_PATH_CMAKE_DIR REPLACE "/Qt6HostInfo$" "")
endif()
