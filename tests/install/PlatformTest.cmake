# Installs the platform stand-ins alone, as a site's own platform would be, with a header that only
# declares the bit-buffer primitives; and builds, installs and uses the library against them.
# Needs SOURCE, BUILD, WORK, CXX, LIBDIR, FLAGS, and CROSS: empty, or the arguments that build for
# another machine, whose library is built alone. Without precompiled headers, so that each source
# shows that it includes what it uses.
file( REMOVE_RECURSE ${WORK} )
set( site ${WORK}/site )

function( run )
   execute_process( COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET )
endfunction()

foreach( component platform platformDevelopment )
   run( ${CMAKE_COMMAND} --install ${BUILD} --prefix ${site} --component ${component} )
endforeach()
file( COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/site/BitBuf.h ${site}/include/Kelvar/BitBuf.h )
run( ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -DVORN_PLATFORM=${site} ${CROSS}
     -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS} -O1" -DCMAKE_BUILD_TYPE=None
     -DVORN_WARNINGS_AS_ERRORS=ON -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON
     -DVORN_BUILD_TESTS=OFF -DVORN_BUILD_EXAMPLES=OFF -DVORN_BUILD_TOOLS=OFF
     -DVORN_PYTHON=OFF -DVORN_SQLITE=OFF # which see no platform
     -DCMAKE_INSTALL_LIBDIR=${LIBDIR} )
run( ${CMAKE_COMMAND} --build ${WORK}/build )
if( EXISTS ${WORK}/build/platform )
   message( FATAL_ERROR "the stand-ins were built beside the site's platform" )
endif()
if( CROSS )
   return()
endif()
run( ${CMAKE_COMMAND} -DBUILD=${WORK}/build -DWORK=${WORK}/installed -DCXX=${CXX}
     -DLIBDIR=${LIBDIR} -DFLAGS=${FLAGS} -DWITH_PLATFORM=${site}
     -P ${CMAKE_CURRENT_LIST_DIR}/InstallTest.cmake )
