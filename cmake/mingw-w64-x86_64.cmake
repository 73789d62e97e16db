# Cross-compiling for 64-bit Windows with Debian's mingw-w64 (posix thread model).
#   cmake -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake -DCMAKE_PREFIX_PATH=<Qt for mingw> ...
# Qt's host tools (moc, uic, rcc) come from the Qt for mingw folder; lrelease from the native Qt.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(TAVERO_MINGW_TRIPLET x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${TAVERO_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TAVERO_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${TAVERO_MINGW_TRIPLET}-windres)
set(CMAKE_MC_COMPILER ${TAVERO_MINGW_TRIPLET}-windmc)

set(CMAKE_FIND_ROOT_PATH /usr/${TAVERO_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# Tests and tools run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
