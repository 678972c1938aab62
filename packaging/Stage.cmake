# Run by cpack between installing and packing: adds what a Debian package has beyond the installed
# tree, and compresses what Debian wants compressed.
find_program( GZIP gzip REQUIRED )

# Without name and time, so that the same text gives the same bytes.
function( compress )
   execute_process( COMMAND ${GZIP} --best --no-name ${ARGN} COMMAND_ERROR_IS_FATAL ANY )
endfunction()

# document( package folder files... ): puts them under the package's documents.
function( document package folder )
   set( documents ${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share/doc/${package} )
   file( COPY ${ARGN} DESTINATION ${documents}/${folder}
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ )
endfunction()

set( source ${CMAKE_CURRENT_LIST_DIR}/.. )
set( contact ${CPACK_PACKAGE_CONTACT} )
configure_file( ${source}/packaging/changelog.in ${CPACK_TEMPORARY_DIRECTORY}/changelog @ONLY )
set( python )
if( EXISTS ${CPACK_TEMPORARY_DIRECTORY}/python3-vorn )
   set( python python3-vorn )
endif()
set( sqlite )
if( EXISTS ${CPACK_TEMPORARY_DIRECTORY}/vorn-sqlite )
   set( sqlite vorn-sqlite )
   document( vorn-sqlite "" ${source}/docs/sql.md )
endif()
set( explorer )
if( EXISTS ${CPACK_TEMPORARY_DIRECTORY}/vorn-explorer )
   set( explorer vorn-explorer )
endif()
foreach( package libvorntunnelkelvar1 libvorntunnelkelvar-dev libvorncodec1 libvorncodec-dev
                 vorn-platform-stand-ins vorn-platform-stand-ins-dev vorn ${python} ${sqlite}
                 ${explorer} )
   document( ${package} "" ${source}/LICENSE ${CPACK_TEMPORARY_DIRECTORY}/changelog
             ${source}/CHANGELOG.md )
   set( share ${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share )
   set( documents ${share}/doc/${package} )
   file( RENAME ${documents}/LICENSE ${documents}/copyright )
   file( RENAME ${documents}/changelog ${documents}/changelog.Debian )
   file( RENAME ${documents}/CHANGELOG.md ${documents}/changelog )
   file( GLOB pages ${share}/man/man*/*.[1-9] )
   compress( ${documents}/changelog.Debian ${documents}/changelog ${pages} )
endforeach()

# Where Debian's zsh looks.
set( zsh ${CPACK_TEMPORARY_DIRECTORY}/vorn/usr/share/zsh )
file( RENAME ${zsh}/site-functions ${zsh}/vendor-completions )

file( GLOB entries ${source}/examples/*.jsonl )
document( vorn examples ${entries} )
document( libvorntunnelkelvar-dev examples ${source}/examples/logicalInterface.cpp )
document( libvorntunnelkelvar-dev "" ${source}/docs/guide.md ${source}/docs/gdb.md )
document( libvorncodec-dev examples ${source}/examples/codec.cpp )

foreach( package vorn-platform-stand-ins ${sqlite} )
   set( overrides ${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share/lintian/overrides )
   file( COPY ${source}/packaging/${package}.overrides DESTINATION ${overrides}
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ )
   file( RENAME ${overrides}/${package}.overrides ${overrides}/${package} )
endforeach()
