# What the fuzzers need of everything that they drive: coverage as feedback, and the sanitizers.
if( NOT CMAKE_CXX_COMPILER_ID STREQUAL Clang )
   message( FATAL_ERROR "VORN_BUILD_FUZZERS needs clang++" )
endif()
set( sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all )
add_compile_options( ${sanitizers} -fsanitize=fuzzer-no-link -fno-omit-frame-pointer )
add_link_options( ${sanitizers} )
if( VORN_BUILD_TESTS )
   # A table of places only serves what a fuzzer prints, and each place is relocated whenever vorn
   # starts, which its tests do thousands of times. Tests themselves aren't driven.
   add_compile_options( -fno-sanitize-coverage=pc-table )
   set( vornTestOptions -fno-sanitize=fuzzer-no-link )
endif()
