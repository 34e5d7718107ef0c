# The second compiler: clang and lld from Debian's security archive, with the headers and libraries of mingw-w64's GCC.
# C++ only. What is C, and what is linked as such, is the development driver and the libraries of texts, which depend
# on GNU's linker: these stay with GCC.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-x64.cmake)
set(CMAKE_CXX_COMPILER clang++-22)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_FLAGS_INIT -fuse-ld=lld-22)
