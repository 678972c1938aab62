// Marks what the library exports; everything else is hidden. Refuses what can't work with it.
#pragma once

#include <cstddef>

// Vectors cross between the program and the library, and are others in debug mode. Whoever builds
// the library in that mode defines VORN_BUILT_WITH_GLIBCXX_DEBUG, in the library and all programs.
#if defined _GLIBCXX_DEBUG && !defined VORN_BUILT_WITH_GLIBCXX_DEBUG
#error "libVornCodec is built without _GLIBCXX_DEBUG: its programs can't define it"
#endif

#define VORN_API __attribute__( ( visibility( "default" ) ) )
