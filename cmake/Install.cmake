# The installed tree: libraries, headers, a CMake package and a pkg-config file.
include( CMakePackageConfigHelpers )

set( package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/VornTunnelKelvar )

install( TARGETS VornTunnelKelvar EXPORT VornTunnelKelvarTargets
         LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                 COMPONENT library NAMELINK_COMPONENT development
         ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development )
install( DIRECTORY include/Hardware DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
         COMPONENT development )
install( EXPORT VornTunnelKelvarTargets NAMESPACE Vorn:: DESTINATION ${package_folder}
         COMPONENT development )

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
configure_file( cmake/VornTunnelKelvar.pc.in VornTunnelKelvar.pc @ONLY )
install( FILES ${PROJECT_BINARY_DIR}/VornTunnelKelvar.pc
         DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development )

include( cmake/Packages.cmake )
