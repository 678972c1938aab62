# With ccache as launcher (CMAKE_CXX_COMPILER_LAUNCHER=ccache), precompiled headers and what is compiled
# with them come from the cache, too.
if( CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache$" )
   set( CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros ${CMAKE_CXX_COMPILER_LAUNCHER} )
   add_compile_options( $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
                        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>" )
endif()
