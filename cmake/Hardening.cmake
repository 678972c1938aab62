# Measures that make a mistake harder to exploit, for everything built from here on.
option( VORN_HARDENING "Build with stack protectors, checked calls and the like" ON )

# A sanitizer watches more closely, and replaces what would be checked.
if( NOT VORN_HARDENING OR VORN_BUILD_FUZZERS OR CMAKE_CXX_FLAGS MATCHES "-fsanitize" )
   return()
endif()

# Returns and jumps go only to marked targets, with the machine's own protection.
if( CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$" )
   set( vorn_x86 TRUE )
   add_compile_options( -fcf-protection=full )
elseif( CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$" )
   add_compile_options( -mbranch-protection=standard )
endif()
add_compile_options( -fstack-protector-strong )
string( TOUPPER "${CMAKE_BUILD_TYPE}" build_type )
if( "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}" MATCHES "-O[123s]" )
   # The checks need optimisation; without it the headers warn.
   add_compile_options( -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 )
   set( vorn_fully_hardened TRUE )
endif()

add_link_options( -Wl,-z,relro,-z,now,-z,noexecstack )

# x86's linker drops the marks of a file because Debian's start-up objects lack them, so they are
# stated here. In a library that is the truth once _init and _fini, which those objects bring and
# nothing needs, are no longer called. A program is entered by _start of those objects, which isn't
# a marked target, so programs claim the shadow stack alone.
if( vorn_x86 )
   add_link_options( -Wl,-z,shstk
      $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-z,ibt,-init=none,-fini=none> )
endif()

include( CheckPIESupported )
check_pie_supported()
