# The Debian packages libvorntunnelkelvar1, libvorncodec1, vorn-platform-stand-ins, a -dev package
# of each, vorn and python3-vorn, made of the components of a tree that is configured for /usr:
# scripts/make/packages.sh. A site replaces the stand-ins with packages of libraries that are
# compatible with them; one whose platform isn't packages the library itself.
if( NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr" OR NOT PROJECT_IS_TOP_LEVEL OR VORN_PLATFORM OR
    NOT BUILD_SHARED_LIBS )
   return()
endif()

file( STRINGS packaging/changelog.in newest LIMIT_COUNT 1 )
if( NOT newest MATCHES "\\((${PROJECT_VERSION})-([^)]+)\\)" )
   message( FATAL_ERROR "packaging/changelog.in has \"${newest}\" instead of ${PROJECT_VERSION}" )
endif()
set( CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2} )
set( package_version ${CMAKE_MATCH_1}-${CMAKE_MATCH_2} )

set( CPACK_GENERATOR DEB )
# The one place with the maintainers' address.
file( STRINGS LICENSE CPACK_PACKAGE_CONTACT REGEX "^Upstream-Contact: " )
string( REPLACE "Upstream-Contact: " "" CPACK_PACKAGE_CONTACT "${CPACK_PACKAGE_CONTACT}" )
set( CPACK_PACKAGE_DESCRIPTION_SUMMARY "" ) # each package has its own
set( CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
                                                 GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE )
set( CPACK_STRIP_FILES ON )
set( CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/Stage.cmake )
set( CPACK_DEB_COMPONENT_INSTALL ON )
set( CPACK_DEBIAN_FILE_NAME DEB-DEFAULT )
set( CPACK_DEBIAN_COMPRESSION_TYPE xz )
set( CPACK_DEBIAN_PACKAGE_SOURCE vorntunnelkelvar )
set( CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON )

# Dependencies: those on Debian's own libraries are found, those on one another are stated.
set( CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON )
set( CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src
                                                 ${PROJECT_BINARY_DIR}/codec
                                                 ${PROJECT_BINARY_DIR}/platform )

# vornPackage( name section summary description ): what the control file of a package says.
macro( vornPackage name section summary description )
   string( TOUPPER ${name} upper_name )
   set( CPACK_DEBIAN_${upper_name}_PACKAGE_NAME ${name} )
   set( CPACK_DEBIAN_${upper_name}_PACKAGE_SECTION ${section} )
   set( CPACK_DEBIAN_${upper_name}_DESCRIPTION "${summary}\n${description}" )
endmacro()

# The libraries' cache is renewed by dpkg's trigger. CPack would add scripts that call ldconfig, but
# for those that are named here; it warns that they don't exist, and goes on without.
set( library_control ${PROJECT_SOURCE_DIR}/packaging/triggers
     ${PROJECT_SOURCE_DIR}/packaging/none/postinst ${PROJECT_SOURCE_DIR}/packaging/none/postrm )

# libraryControl( package lines... ): the control files of a package with libraries. Each line names
# a library, the version in its name, and what packages that link it depend on.
function( libraryControl package )
   list( JOIN ARGN "\n" lines )
   file( CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packages/${package}/shlibs CONTENT "${lines}\n" )
   string( TOUPPER ${package} upper_name )
   set( CPACK_DEBIAN_${upper_name}_PACKAGE_CONTROL_EXTRA
        ${library_control} ${PROJECT_BINARY_DIR}/packages/${package}/shlibs PARENT_SCOPE )
endfunction()

# What a site's own packages of its platform are called, which the stand-ins give way to.
set( site_libraries Kelvar HwVornFennTypes Oru )
set( standins_version ">= ${PROJECT_VERSION}" )
foreach( library ${site_libraries} )
   string( TOLOWER ${library} lower_name )
   set( on_${library} "vorn-platform-stand-ins (${standins_version}) | lib${lower_name}1" )
   list( APPEND standins_shlibs "lib${library} 1 ${on_${library}}" )
   list( APPEND site_packages lib${lower_name}1 )
   list( APPEND site_dev_packages lib${lower_name}-dev )
   list( APPEND on_site_dev "vorn-platform-stand-ins-dev (${standins_version}) | lib${lower_name}-dev" )
   list( APPEND on_site ${on_${library}} )
endforeach()
foreach( list site_packages site_dev_packages on_site on_site_dev )
   list( JOIN ${list} ", " ${list} )
endforeach()

set( about
"Knows for 22 tables and registers on 13 chip types which fields an entry has,
at which bit and how wide, and at which address it lies; composes and decodes
entry images field by field." )

vornPackage( libvorntunnelkelvar1 libs "typed views over packet processor table entries"
"${about}

This package has the shared library." )
# Packed relocations are of no symbol, so nothing finds that they need this C library.
set( CPACK_DEBIAN_LIBVORNTUNNELKELVAR1_PACKAGE_DEPENDS "libc6 (>= 2.36), ${on_site}" )
libraryControl( libvorntunnelkelvar1
   "libVornTunnelKelvar 1 libvorntunnelkelvar1 (>= ${PROJECT_VERSION})" )

vornPackage( libvorntunnelkelvar-dev libdevel
"typed views over packet processor table entries (development)"
"${about}

This package has the headers, the CMake package VornTunnelKelvar and the
pkg-config file." )
set( CPACK_DEBIAN_LIBVORNTUNNELKELVAR-DEV_PACKAGE_DEPENDS
     "libvorntunnelkelvar1 (= ${package_version}), ${on_site_dev}" )

# The libraries of a site's own packages take the place of these, and programs notice nothing.
set( about_standins
"Stand-ins for the platform libraries libKelvar, libHwVornFennTypes and libOru
that libVornTunnelKelvar stands on, for a machine without a site's own: base
classes and bit buffers, chip types, strings, traces and assertions." )
vornPackage( vorn-platform-stand-ins libs "stand-ins for a site's platform libraries"
"${about_standins}

This package has the shared libraries. It gives way to a site's own packages
${site_packages}." )
vornPackage( vorn-platform-stand-ins-dev libdevel
"stand-ins for a site's platform libraries (development)"
"${about_standins}

This package has the headers and a part of the CMake package VornTunnelKelvar.
It gives way to a site's own packages
${site_dev_packages}." )
set( had_files "libvorntunnelkelvar1 (<< 1.1.0)" ) # as long as these were in them
set( had_dev_files "libvorntunnelkelvar-dev (<< 1.1.0)" )
foreach( relation PROVIDES CONFLICTS REPLACES )
   set( CPACK_DEBIAN_VORN-PLATFORM-STAND-INS_PACKAGE_${relation} "${site_packages}" )
   set( CPACK_DEBIAN_VORN-PLATFORM-STAND-INS-DEV_PACKAGE_${relation} "${site_dev_packages}" )
endforeach()
string( APPEND CPACK_DEBIAN_VORN-PLATFORM-STAND-INS_PACKAGE_REPLACES ", ${had_files}" )
string( APPEND CPACK_DEBIAN_VORN-PLATFORM-STAND-INS-DEV_PACKAGE_REPLACES ", ${had_dev_files}" )
set( CPACK_DEBIAN_VORN-PLATFORM-STAND-INS_PACKAGE_BREAKS "${had_files}" )
set( CPACK_DEBIAN_VORN-PLATFORM-STAND-INS-DEV_PACKAGE_BREAKS "${had_dev_files}" )
libraryControl( vorn-platform-stand-ins ${standins_shlibs} )
set( CPACK_DEBIAN_VORN-PLATFORM-STAND-INS-DEV_PACKAGE_DEPENDS
     "vorn-platform-stand-ins (= ${package_version})" )

vornPackage( libvorncodec1 libs "packet processor table entries by name at run time"
"${about}

This package has the library for programs that know tables and fields by name
alone: it reports bad input rather than ending the program, and decodes and
encodes many images at once." )
set( CPACK_DEBIAN_LIBVORNCODEC1_PACKAGE_DEPENDS "libvorntunnelkelvar1 (>= ${PROJECT_VERSION}), ${on_HwVornFennTypes}" )
libraryControl( libvorncodec1 "libVornCodec 1 libvorncodec1 (>= ${PROJECT_VERSION})" )

vornPackage( libvorncodec-dev libdevel
"packet processor table entries by name at run time (development)"
"${about}

This package has the headers of the library for programs that know tables and
fields by name alone, its part of the CMake package VornTunnelKelvar and the
pkg-config file." )
set( CPACK_DEBIAN_LIBVORNCODEC-DEV_PACKAGE_DEPENDS
     "libvorncodec1 (= ${package_version}), libvorntunnelkelvar-dev (= ${package_version})" )

vornPackage( vorn utils "composes and decodes packet processor table entries"
"Lists tables and their layouts, turns fields into entry images with their
addresses and entry images into fields, one by one or as JSON lines." )
set( CPACK_DEBIAN_VORN_PACKAGE_DEPENDS "libvorntunnelkelvar1 (>= ${PROJECT_VERSION})"
     "libvorncodec1 (>= ${PROJECT_VERSION})" ${on_Oru} )
list( JOIN CPACK_DEBIAN_VORN_PACKAGE_DEPENDS ", " CPACK_DEBIAN_VORN_PACKAGE_DEPENDS )

if( TARGET VornPython )
   vornPackage( python3-vorn python "packet processor table entries in Python"
"Decodes and encodes the entries of packet processor tables: one entry as a
dictionary, many as NumPy arrays, pandas data frames or Arrow streams." )
   set( CPACK_DEBIAN_PYTHON3-VORN_PACKAGE_DEPENDS "${python_depends}" )
   set( CPACK_DEBIAN_PYTHON3-VORN_PACKAGE_RECOMMENDS python3-pandas )
   set( CPACK_DEBIAN_PYTHON3-VORN_PACKAGE_CONTROL_EXTRA
        ${PROJECT_SOURCE_DIR}/packaging/python/postinst ${PROJECT_SOURCE_DIR}/packaging/python/prerm )
endif()

if( TARGET vornsqlite )
   vornPackage( vorn-sqlite database "packet processor table entries in SQLite"
"A loadable extension of SQLite: fields of the entries of packet processor
tables in queries, views and indexes. The document sql.md shows how." )
   set( CPACK_DEBIAN_VORN-SQLITE_PACKAGE_DEPENDS
        "libvorncodec1 (>= ${PROJECT_VERSION}), libsqlite3-0 (>= 3.31)" )
   set( CPACK_DEBIAN_VORN-SQLITE_PACKAGE_RECOMMENDS sqlite3 )
   # Loaded by its name from the folder itself, not through the libraries' cache.
   set( CPACK_DEBIAN_VORN-SQLITE_PACKAGE_CONTROL_EXTRA
        ${PROJECT_SOURCE_DIR}/packaging/none/postinst ${PROJECT_SOURCE_DIR}/packaging/none/postrm )
endif()

# The page of scripts/make/explorer.sh, where that has built it.
set( explorer ${PROJECT_SOURCE_DIR}/build/explorer/vorn-explorer.html )
if( EXISTS ${explorer} )
   vornPackage( vorn-explorer utils "packet processor table entries in a browser"
"A page that needs no server and no network: shows the fields of entry images,
changes their values, and compares layouts, images and dumps." )
   set( CPACK_DEBIAN_VORN-EXPLORER_PACKAGE_ARCHITECTURE all )
   set( CPACK_DEBIAN_VORN-EXPLORER_PACKAGE_SHLIBDEPS OFF )
   set( CPACK_DEBIAN_VORN-EXPLORER_PACKAGE_SUGGESTS vorn )
   set( CPACK_DEBIAN_VORN_PACKAGE_SUGGESTS vorn-explorer )
   install( FILES ${explorer} DESTINATION ${CMAKE_INSTALL_DATADIR}/vorn COMPONENT explorer )
endif()

include( CPack )
cpack_add_component( library GROUP libvorntunnelkelvar1 )
cpack_add_component( platform GROUP vorn-platform-stand-ins )
cpack_add_component( development GROUP libvorntunnelkelvar-dev )
cpack_add_component( platformDevelopment GROUP vorn-platform-stand-ins-dev )
cpack_add_component( codec GROUP libvorncodec1 )
cpack_add_component( codecDevelopment GROUP libvorncodec-dev )
cpack_add_component( vorn GROUP vorn )
if( EXISTS ${explorer} )
   cpack_add_component( explorer GROUP vorn-explorer )
endif()
if( TARGET VornPython )
   cpack_add_component( python GROUP python3-vorn )
endif()
if( TARGET vornsqlite )
   cpack_add_component( sqlite GROUP vorn-sqlite )
endif()
