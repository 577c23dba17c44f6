# Cross build for 64-bit Windows with MinGW-w64 (POSIX thread model, for std::thread and
# googletest), run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(NV_MINGW_PREFIX x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${NV_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${NV_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${NV_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${NV_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# ctest runs the Windows executables through Wine. Debian's `wine` starts 64-bit programs as
# well; the bare wine64 loader is a fallback for installs without the wrapper.
if(NOT NV_WINE)
    find_program(NV_WINE NAMES wine NO_CMAKE_FIND_ROOT_PATH)
    if(NOT NV_WINE)
        find_program(NV_WINE NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
    endif()
endif()
# A private prefix per build tree, quiet, and without the offers to install Mono and Gecko.
set(NV_WINEPREFIX "${CMAKE_BINARY_DIR}/wineprefix" CACHE PATH "Wine prefix the tests run in")
if(NV_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/env "WINEPREFIX=${NV_WINEPREFIX}" WINEDEBUG=-all
        "WINEDLLOVERRIDES=mscoree,mshtml=" ${NV_WINE})
endif()
