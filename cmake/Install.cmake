# The installed tree: libraries, headers, a CMake package and pkg-config files.
include( CMakePackageConfigHelpers )

set( package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/VornTunnelKelvar )

install( TARGETS VornTunnelKelvar VornAt EXPORT VornTunnelKelvarTargets
         LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                 COMPONENT library NAMELINK_COMPONENT development
         ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development )
install( DIRECTORY include/Hardware DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
         COMPONENT development )
# Each class's accessors written out with comments, for editors. A class whose datasheet isn't current
# goes without.
find_program( AWK awk )
mark_as_advanced( AWK )
# writeAccessors( form folder class ): <folder>/<class>.inc, to be installed.
function( writeAccessors form folder class )
   set( fields ${PROJECT_SOURCE_DIR}/include/Hardware/fields/${class}.def )
   set( datasheet ${PROJECT_SOURCE_DIR}/docs/reference/${class}.md )
   if( NOT AWK OR NOT EXISTS ${datasheet} )
      return()
   endif()
   set_property( DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${fields} ${datasheet} )
   execute_process( COMMAND ${AWK} -v form=${form} -f ${PROJECT_SOURCE_DIR}/docs/accessors.awk
                            ${fields} ${datasheet}
                    OUTPUT_VARIABLE accessors RESULT_VARIABLE differs )
   if( NOT differs )
      file( CONFIGURE OUTPUT accessors/${folder}/${class}.inc CONTENT "${accessors}" @ONLY )
      install( FILES ${PROJECT_BINARY_DIR}/accessors/${folder}/${class}.inc
               DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development )
   endif()
endfunction()
file( STRINGS include/Hardware/detail/Classes.def classes REGEX "^HARDWARE_CLASS" )
foreach( class ${classes} )
   string( REGEX REPLACE ".*\\( (.*) \\).*" "\\1" class "${class}" )
   writeAccessors( header Hardware/accessors ${class} )
   writeAccessors( at Hardware/accessors/at ${class} )
endforeach()
install( EXPORT VornTunnelKelvarTargets NAMESPACE Vorn:: DESTINATION ${package_folder}
         COMPONENT development )

# A target file of its own, since the codec may be missing where the library is installed.
install( TARGETS VornCodec EXPORT VornCodecTargets
         LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                 COMPONENT codec NAMELINK_COMPONENT codecDevelopment
         ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT codecDevelopment )
install( DIRECTORY codec/include/Vorn DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
         COMPONENT codecDevelopment )
install( EXPORT VornCodecTargets NAMESPACE Vorn:: DESTINATION ${package_folder}
         COMPONENT codecDevelopment )

configure_package_config_file( cmake/VornTunnelKelvarConfig.cmake.in
                               VornTunnelKelvarConfig.cmake INSTALL_DESTINATION ${package_folder} )
write_basic_package_version_file( VornTunnelKelvarConfigVersion.cmake
                                  COMPATIBILITY SameMajorVersion )
install( FILES ${PROJECT_BINARY_DIR}/VornTunnelKelvarConfig.cmake
               ${PROJECT_BINARY_DIR}/VornTunnelKelvarConfigVersion.cmake
               cmake/SitePlatform.cmake
         DESTINATION ${package_folder} COMPONENT development )

# The platform's flags, if it isn't in the same prefix.
if( VORN_PLATFORM )
   set( platform_cflags "-I${VORN_PLATFORM}/include" )
   get_filename_component( platform_library_folder ${VORN_Kelvar_LIBRARY} DIRECTORY )
   set( platform_libs "-L${platform_library_folder}" )
endif()
# Relative to the pkg-config files, so that the tree can be installed anywhere.
file( RELATIVE_PATH up_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX} )
function( installPkgConfig name component )
   configure_file( cmake/${name}.pc.in ${name}.pc @ONLY )
   install( FILES ${PROJECT_BINARY_DIR}/${name}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component} )
endfunction()
installPkgConfig( VornTunnelKelvar development )
installPkgConfig( VornCodec codecDevelopment )

include( cmake/Packages.cmake )
