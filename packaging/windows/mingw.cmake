# Compiles for Windows on Debian, with its MinGW (posix threads). ZINT_WINDOWS_LIBRARIES is the folder of the libraries for
# Windows, as makeLibraries beside this file makes it; the environment variable of that name does, too.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT ZINT_WINDOWS_LIBRARIES)
  set(ZINT_WINDOWS_LIBRARIES $ENV{ZINT_WINDOWS_LIBRARIES})
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZINT_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${ZINT_WINDOWS_LIBRARIES})
list(APPEND CMAKE_PREFIX_PATH ${ZINT_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# Qt's own tools run on the machine that compiles.
set(QT_HOST_PATH /usr)
file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*/cmake/Qt6HostInfo)
get_filename_component(QT_HOST_PATH_CMAKE_DIR "${QT_HOST_PATH_CMAKE_DIR}" DIRECTORY)
