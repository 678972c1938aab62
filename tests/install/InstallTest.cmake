# Installs a build tree and builds a consumer against the result, by CMake and by pkg-config. What
# is installed knows no prefix: it lies in one that the build tree never heard of.
# Needs BUILD, WORK, CXX, LIBDIR, FLAGS, and WITH_PLATFORM: empty, or a site prefix to run with.
file( REMOVE_RECURSE ${WORK} )
set( prefix "${WORK}/some prefix" )
set( examples ${CMAKE_CURRENT_LIST_DIR}/../../examples )

function( run )
   execute_process( COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output )
   set( output "${output}" PARENT_SCOPE )
endfunction()

# expectRun( program file ): that the program prints what the file holds.
function( expectRun program file )
   file( READ ${file} expected )
   run( ${program} )
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
     -DCODEC_PROGRAM=${examples}/codec.cpp )
run( ${CMAKE_COMMAND} --build ${WORK}/consumer )
expectRun( ${WORK}/consumer/consumer ${CMAKE_CURRENT_LIST_DIR}/consumer/expected.txt )
expectRun( ${WORK}/consumer/codecConsumer ${examples}/codec.txt )
expectRun( ${WORK}/consumer/atConsumer ${CMAKE_CURRENT_LIST_DIR}/consumer/at.txt )

# expectAnswer( prefix ask message ): what CMake says to find_package( VornTunnelKelvar <ask> ), in
# one line; it is found where `message` is empty.
function( expectAnswer where ask message )
   execute_process( COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/asks -B ${WORK}/asks
                            -G Ninja -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${where}
                            "-DASK=${ask}" --fresh
                    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE error )
   string( REGEX REPLACE "[ \n]+" " " error "${error}" )
   string( FIND "${error}" "${message}" at )
   if( at EQUAL -1 OR ( result EQUAL 0 AND message ) OR ( NOT result EQUAL 0 AND NOT message ) )
      message( FATAL_ERROR "find_package( VornTunnelKelvar ${ask} ): ${result}, ${error}" )
   endif()
endfunction()
expectAnswer( ${prefix} "REQUIRED" "" )
expectAnswer( ${prefix} "1.0;REQUIRED;COMPONENTS;At" "" )
expectAnswer( ${prefix} "1;REQUIRED;OPTIONAL_COMPONENTS;Sql" "" )
expectAnswer( ${prefix} "1;REQUIRED;COMPONENTS;Library;codec"
              "no component \"codec\"; allowed: Library, Codec, At" )
foreach( version 1.99 2 0.9 )
   expectAnswer( ${prefix} "${version};REQUIRED"
                 "compatible with requested version \"${version}\"" )
endforeach()
# Without the codec, as its packages may be missing.
foreach( component library development platform platformDevelopment )
   run( ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/library --component ${component} )
endforeach()
expectAnswer( ${WORK}/library "1;REQUIRED;COMPONENTS;Codec"
              "component Codec is not installed in ${WORK}/library; Debian: libvorncodec-dev" )

# The pkg-config files, which follow the tree to where it lies.
set( ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig )
set( ENV{LD_LIBRARY_PATH} "${prefix}/${LIBDIR}:${WITH_PLATFORM}/${LIBDIR}" )
separate_arguments( own_flags UNIX_COMMAND "${FLAGS}" )
function( expectBuild package standard source file )
   run( pkg-config --cflags --libs ${package} )
   separate_arguments( flags UNIX_COMMAND "${output}" )
   run( ${CXX} -std=${standard} ${own_flags} ${source} -o ${WORK}/${package} ${flags} )
   expectRun( ${WORK}/${package} ${file} )
endfunction()
expectBuild( VornTunnelKelvar c++17 ${CMAKE_CURRENT_LIST_DIR}/consumer/consumer.cpp
             ${CMAKE_CURRENT_LIST_DIR}/consumer/expected.txt )
expectBuild( VornCodec c++20 ${examples}/codec.cpp ${examples}/codec.txt )
