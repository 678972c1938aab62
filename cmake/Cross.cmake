# Builds for another machine with Debian's cross compiler: VORN_MACHINE is aarch64, VORN_ROOT the
# folder with Debian's libraries for it, which comes before / in all that is looked for.
list( APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VORN_MACHINE VORN_ROOT )
set( CMAKE_SYSTEM_NAME Linux )
set( CMAKE_SYSTEM_PROCESSOR ${VORN_MACHINE} )
set( CMAKE_CXX_COMPILER ${VORN_MACHINE}-linux-gnu-g++ )
set( CMAKE_LIBRARY_ARCHITECTURE ${VORN_MACHINE}-linux-gnu )
set( CMAKE_FIND_ROOT_PATH ${VORN_ROOT} )
set( CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER )
set( CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY )
set( CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY )
