# What makes a mistake in a program harder to exploit, for all that is built from here on.
option( VORN_HARDENING "Build with stack protectors, checked calls and the like" ON )

# A sanitizer watches more closely, and replaces what would be checked.
if( NOT VORN_HARDENING OR VORN_BUILD_FUZZERS OR CMAKE_CXX_FLAGS MATCHES "-fsanitize" )
   return()
endif()

add_compile_options( -fstack-protector-strong -fcf-protection=full )
string( TOUPPER "${CMAKE_BUILD_TYPE}" build_type )
if( "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}" MATCHES "-O[123s]" )
   # The checks fold to nothing without optimisation, and the headers warn of that.
   add_compile_options( -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 )
   set( vorn_fully_hardened TRUE )
endif()

# The linker drops the marks of a file because Debian's start-up objects lack them, so they are
# stated here. In a library that is the truth once _init and _fini, which those objects bring and
# nothing needs, are no longer called. A program is entered by _start of those objects, which isn't
# a marked target, so programs claim the shadow stack alone.
add_link_options( -Wl,-z,relro,-z,now,-z,noexecstack,-z,shstk
   $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-z,ibt,-init=none,-fini=none> )

include( CheckPIESupported )
check_pie_supported()
