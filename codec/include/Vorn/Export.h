// Marks what the library exports; everything else is hidden. Refuses what can't work with it.
#pragma once

#include <cstddef>

// Vectors are passed between the program and the library, and differ in debug mode. To build the
// library in that mode, define VORN_BUILT_WITH_GLIBCXX_DEBUG in the library and in all programs.
#if defined _GLIBCXX_DEBUG && !defined VORN_BUILT_WITH_GLIBCXX_DEBUG
#error "libVornCodec is built without _GLIBCXX_DEBUG: its programs can't define it"
#endif

#define VORN_API __attribute__( ( visibility( "default" ) ) )
