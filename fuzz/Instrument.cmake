# What the fuzzers need of everything that they drive: coverage as feedback, and the sanitizers.
if( NOT CMAKE_CXX_COMPILER_ID STREQUAL Clang )
   message( FATAL_ERROR "VORN_BUILD_FUZZERS needs clang++" )
endif()
set( sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all )
add_compile_options( ${sanitizers} -fsanitize=fuzzer-no-link -fno-omit-frame-pointer )
add_link_options( ${sanitizers} )
