# Installs a build tree and builds a consumer against the result, by CMake and by pkg-config.
# Needs BUILD, WORK, CXX, LIBDIR, FLAGS, and WITH_PLATFORM: empty, or a site prefix to run with.
file( REMOVE_RECURSE ${WORK} )
set( prefix ${WORK}/prefix )
file( STRINGS ${CMAKE_CURRENT_LIST_DIR}/consumer/expected.txt expected )

function( run )
   execute_process( COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output )
   set( output "${output}" PARENT_SCOPE )
endfunction()

function( expectRun program )
   execute_process( COMMAND ${program} OUTPUT_VARIABLE output
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY )
   if( NOT output STREQUAL expected )
      message( FATAL_ERROR "${program} printed \"${output}\", not \"${expected}\"" )
   endif()
endfunction()

run( ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix} )

# The installed program finds the installed libraries.
if( EXISTS ${prefix}/bin/vorn )
   run( ${prefix}/bin/vorn tables )
   if( NOT output MATCHES "TcamActionTable" )
      message( FATAL_ERROR "vorn tables printed \"${output}\"" )
   endif()
endif()

# The CMake package.
run( ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${WORK}/consumer -G Ninja
     -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_PREFIX_PATH=${prefix}
     -DCMAKE_INSTALL_LIBDIR=${LIBDIR} )
run( ${CMAKE_COMMAND} --build ${WORK}/consumer )
expectRun( ${WORK}/consumer/consumer )

# The pkg-config file, which follows the tree to where it lies.
set( ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig )
run( pkg-config --define-variable=prefix=${prefix} --cflags --libs VornTunnelKelvar )
separate_arguments( flags UNIX_COMMAND "${output}" )
separate_arguments( own_flags UNIX_COMMAND "${FLAGS}" )
run( ${CXX} -std=c++17 ${own_flags} ${CMAKE_CURRENT_LIST_DIR}/consumer/consumer.cpp
     -o ${WORK}/consumer17 ${flags} )
set( ENV{LD_LIBRARY_PATH} "${prefix}/${LIBDIR}:${WITH_PLATFORM}/${LIBDIR}" )
expectRun( ${WORK}/consumer17 )
