# Builds for 64-bit Arm with Debian's cross compiler, and runs what was built under qemu-user.
set( CMAKE_SYSTEM_NAME Linux )
set( CMAKE_SYSTEM_PROCESSOR aarch64 )
set( CMAKE_CXX_COMPILER aarch64-linux-gnu-g++ )
set( CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu )
set( CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L /usr/aarch64-linux-gnu )
# GoogleTest is built with the project; everything else that is found is header-only.
set( CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu )
set( CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER )
