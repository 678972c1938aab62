# Imports libKelvar, libHwVornFennTypes and libOru from the prefix VORN_PLATFORM as Vorn::<name>.
foreach( name Kelvar HwVornFennTypes Oru )
   if( NOT TARGET Vorn::${name} )
      find_library( VORN_${name}_LIBRARY ${name} PATHS ${VORN_PLATFORM}
                    PATH_SUFFIXES ${CMAKE_INSTALL_LIBDIR} lib NO_DEFAULT_PATH REQUIRED )
      mark_as_advanced( VORN_${name}_LIBRARY )
      add_library( Vorn::${name} SHARED IMPORTED GLOBAL )
      set_target_properties( Vorn::${name} PROPERTIES
                             IMPORTED_LOCATION ${VORN_${name}_LIBRARY}
                             INTERFACE_INCLUDE_DIRECTORIES ${VORN_PLATFORM}/include )
   endif()
endforeach()
