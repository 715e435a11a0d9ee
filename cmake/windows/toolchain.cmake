# Builds for Windows with Debian's mingw-w64. MINGW_ARCH is i686 or x86_64; everything is linked into the
# program, so that no library has to lie beside it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${MINGW_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MINGW_ARCH)

set(CMAKE_C_COMPILER ${MINGW_ARCH}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${MINGW_ARCH}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${MINGW_ARCH}-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

set(CMAKE_FIND_ROOT_PATH /usr/${MINGW_ARCH}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows 7 and later.
set(CMAKE_C_FLAGS_INIT "-D_WIN32_WINNT=0x0601")
if(MINGW_ARCH STREQUAL "i686")
  # The old floating-point unit keeps more digits than a double has; shows would be timed by other figures.
  string(APPEND CMAKE_C_FLAGS_INIT " -msse2 -mfpmath=sse")
endif()
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
