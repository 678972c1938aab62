# Builds for another machine with Debian's cross compiler: VORN_MACHINE is aarch64.
list( APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VORN_MACHINE )
set( CMAKE_SYSTEM_NAME Linux )
set( CMAKE_SYSTEM_PROCESSOR ${VORN_MACHINE} )
set( CMAKE_CXX_COMPILER ${VORN_MACHINE}-linux-gnu-g++ )
set( CMAKE_LIBRARY_ARCHITECTURE ${VORN_MACHINE}-linux-gnu )
# GoogleTest is built beside; what else is found consists of headers alone.
set( CMAKE_FIND_ROOT_PATH /usr/${VORN_MACHINE}-linux-gnu )
set( CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER )
