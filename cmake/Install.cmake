# The installed tree: libraries, headers, a CMake package and pkg-config files.
include( CMakePackageConfigHelpers )

set( package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/VornTunnelKelvar )

install( TARGETS VornTunnelKelvar VornAt EXPORT VornTunnelKelvarTargets
         LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                 COMPONENT library NAMELINK_COMPONENT development
         ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development )
install( DIRECTORY include/Hardware DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
         COMPONENT development )
install( EXPORT VornTunnelKelvarTargets NAMESPACE Vorn:: DESTINATION ${package_folder}
         COMPONENT development )

# Targets of its own, since it may be missing where the library is.
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

# The platform's flags, where it isn't in the same prefix.
if( VORN_PLATFORM )
   set( platform_cflags "-I${VORN_PLATFORM}/include" )
   get_filename_component( platform_library_folder ${VORN_Kelvar_LIBRARY} DIRECTORY )
   set( platform_libs "-L${platform_library_folder}" )
endif()
# From where the pkg-config files lie, so that the tree can be installed anywhere.
file( RELATIVE_PATH up_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX} )
function( installPkgConfig name component )
   configure_file( cmake/${name}.pc.in ${name}.pc @ONLY )
   install( FILES ${PROJECT_BINARY_DIR}/${name}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component} )
endfunction()
installPkgConfig( VornTunnelKelvar development )
installPkgConfig( VornCodec codecDevelopment )

include( cmake/Packages.cmake )
