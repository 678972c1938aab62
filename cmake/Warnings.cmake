# A precompiled header holds our own headers, too: without CMake's pragma, which would make system
# headers of them, they warn as elsewhere.
set( CMAKE_PCH_PROLOGUE "" )

# vornWarnings( target ): the project's warning set.
function( vornWarnings target )
   target_compile_options( ${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow )
   if( VORN_WARNINGS_AS_ERRORS )
      target_compile_options( ${target} PRIVATE -Werror )
   endif()
endfunction()
