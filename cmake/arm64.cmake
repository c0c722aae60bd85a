# A build for arm64 with Debian's cross compiler and multiarch libraries.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(PKG_CONFIG_EXECUTABLE /usr/bin/aarch64-linux-gnu-pkg-config)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
# For CPack: what strips, and whose package it is.
set(CMAKE_STRIP aarch64-linux-gnu-strip)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
