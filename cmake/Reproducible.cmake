# Two builds of one tree yield the same bytes, wherever the tree lies.
set( CMAKE_BUILD_RPATH_USE_ORIGIN ON )
if( NOT CMAKE_BUILD_TYPE STREQUAL Debug ) # whose reader wants to find the sources
   add_compile_options( -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. )
endif()
