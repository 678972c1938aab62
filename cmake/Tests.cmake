option( VORN_WHOLE_TEST_PROGRAMS "Run test programs whole, not each test in a process of its own" OFF )
include( GoogleTest )

# For the tests' own code, whatever the build: it runs once, and compiles in half the time. What
# guards a buffer needs optimisation.
set( vornUnoptimised -O0 -U_FORTIFY_SOURCE )

# vornOptimisedForTests( target ): what nearly all tests go through is optimised under the sanitizers,
# too. It compiles for longer, and the tests take half the time.
function( vornOptimisedForTests target )
   if( CMAKE_CXX_FLAGS MATCHES "-fsanitize" )
      target_compile_options( ${target} PRIVATE $<$<CONFIG:Debug>:-O1> )
   endif()
endfunction()

# vornTests( program [PREFIX prefix] [PARTS count] [TIMEOUT seconds] ): the tests of a GoogleTest
# program, each known to ctest; or the whole program in that many parts, as starting it once for each
# of its tests takes long under a sanitizer.
function( vornTests program )
   cmake_parse_arguments( PARSE_ARGV 1 tests "" "PREFIX;PARTS;TIMEOUT" "" )
   target_compile_options( ${program} PRIVATE ${vornTestOptions} )
   if( NOT tests_TIMEOUT )
      set( tests_TIMEOUT 1500 )
   endif()
   if( NOT VORN_WHOLE_TEST_PROGRAMS )
      gtest_discover_tests( ${program} TEST_PREFIX "${tests_PREFIX}" DISCOVERY_MODE PRE_TEST
                            PROPERTIES TIMEOUT ${tests_TIMEOUT} )
      return()
   endif()
   if( NOT tests_PARTS )
      set( tests_PARTS 1 )
   endif()
   foreach( part RANGE 1 ${tests_PARTS} )
      math( EXPR index "${part} - 1" )
      set( name ${tests_PREFIX}${program}.${part} )
      add_test( NAME ${name} COMMAND ${program} --gtest_brief=1 )
      set_tests_properties( ${name} PROPERTIES COST 100
         ENVIRONMENT "GTEST_TOTAL_SHARDS=${tests_PARTS};GTEST_SHARD_INDEX=${index}" )
   endforeach()
endfunction()
