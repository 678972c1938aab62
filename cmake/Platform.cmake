# The three platform libraries as Vorn::Kelvar, Vorn::HwVornFennTypes and Vorn::Oru: a site's own
# under VORN_PLATFORM, or the stand-ins of platform/.
if( VORN_PLATFORM )
   include( cmake/SitePlatform.cmake )
   vornSitePlatform( ${VORN_PLATFORM} ${CMAKE_INSTALL_LIBDIR} )
else()
   add_subdirectory( platform )
endif()
