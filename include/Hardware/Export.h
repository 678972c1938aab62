// Marks what the library exports; everything else is hidden. Refuses to compile on platforms that
// can't work with it.
#pragma once

#if __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "libVornTunnelKelvar reads entry images as native words: little-endian machines only"
#endif
// Of 32-bit machines only WebAssembly is tested, in the explorer.
#if __SIZEOF_POINTER__ != 8 && !defined __wasm32__
#error "libVornTunnelKelvar is for 64-bit machines only: x86-64 and aarch64 are tested"
#endif

#include <cstddef>

// Strings are passed between the program and the library. To build the library and its platform
// with libc++, define HARDWARE_BUILT_WITH_LIBCXX in the library and in all programs.
#if defined _LIBCPP_VERSION && !defined HARDWARE_BUILT_WITH_LIBCXX && !defined __EMSCRIPTEN__
#error "libVornTunnelKelvar is built with libstdc++: its programs can't use libc++"
#endif
#if defined _GLIBCXX_USE_CXX11_ABI && !_GLIBCXX_USE_CXX11_ABI
#error "libVornTunnelKelvar is built with _GLIBCXX_USE_CXX11_ABI=1: its programs can't set it to 0"
#endif

#define HARDWARE_API __attribute__( ( visibility( "default" ) ) )

// Functions whose symbols would be the same with either standard library carry its name, so that
// the linker refuses a program whose library was built with the other one.
#if defined _LIBCPP_VERSION && !defined __EMSCRIPTEN__
#define HARDWARE_STANDARD_LIBRARY __attribute__( ( abi_tag( "libcxx" ) ) )
#else
#define HARDWARE_STANDARD_LIBRARY
#endif

// Containers differ with _GLIBCXX_DEBUG and don't cross the library's boundary. Inline functions
// that return them have symbols of their own for each kind of container.
#ifdef _GLIBCXX_DEBUG
#define HARDWARE_OWN_CONTAINER __attribute__( ( abi_tag( "debugContainer" ) ) )
#else
#define HARDWARE_OWN_CONTAINER __attribute__( ( abi_tag( "container" ) ) )
#endif
