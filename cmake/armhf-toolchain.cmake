# Debian's cross compiler for 32-bit ARM with the libraries of build/armhf-root,
# which scripts/armhf-root makes. The programs start inside scripts/armhf-namespace.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # notes on what GCC 7 changed; all here is from GCC 12
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

get_filename_component(project ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(CMAKE_SYSROOT ${project}/build/armhf-root)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR unshare --root=${CMAKE_SYSROOT} --wd=${CMAKE_BINARY_DIR})
