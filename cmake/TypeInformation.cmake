# vornDescribeTypes( target ): with VORN_TYPE_INFORMATION, what the tests compare the types of the
# binary interface by: g++'s debug information, without the places of variables, which costs next to
# nothing to compile and leaves the code as it is.
option( VORN_TYPE_INFORMATION "Describe the libraries' types in them, for the tests to compare" OFF )

function( vornDescribeTypes target )
   if( VORN_TYPE_INFORMATION AND CMAKE_CXX_COMPILER_ID STREQUAL GNU )
      target_compile_options( ${target} PRIVATE -g -fno-var-tracking -fno-var-tracking-assignments )
   endif()
endfunction()
