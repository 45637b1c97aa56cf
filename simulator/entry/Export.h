#pragma once

// The calling convention and visibility of the closed libraries' entry points.
#ifdef _WIN32
#define ZTH_BOARD_CALL __stdcall
#define ZTH_BOARD_EXPORT extern "C" __declspec(dllexport)
#else
#define ZTH_BOARD_CALL
#define ZTH_BOARD_EXPORT extern "C" __attribute__((visibility("default")))
#endif
