# vornSitePlatform( prefix libdir ): imports libKelvar, libHwVornFennTypes and libOru from the prefix
# as Vorn::<name>; the libraries lie in the prefix's `libdir` or `lib`.
macro( vornSitePlatform prefix libdir )
   foreach( vorn_name Kelvar HwVornFennTypes Oru )
      if( NOT TARGET Vorn::${vorn_name} )
         find_library( VORN_${vorn_name}_LIBRARY ${vorn_name} PATHS ${prefix}
                       PATH_SUFFIXES ${libdir} lib NO_DEFAULT_PATH REQUIRED )
         mark_as_advanced( VORN_${vorn_name}_LIBRARY )
         add_library( Vorn::${vorn_name} SHARED IMPORTED GLOBAL )
         set_target_properties( Vorn::${vorn_name} PROPERTIES
                                IMPORTED_LOCATION ${VORN_${vorn_name}_LIBRARY}
                                INTERFACE_INCLUDE_DIRECTORIES ${prefix}/include )
      endif()
   endforeach()
endmacro()
