// Loads a plug-in, uses it and unloads it again and again: once the library and malloc have what
// they keep, the process holds no more than before.
#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <optional>

namespace {

bool loadUseAndUnload( const char* path ) {
   void* const plugin = dlopen( path, RTLD_NOW | RTLD_LOCAL );
   if( plugin == nullptr ) {
      std::printf( "%s\n", dlerror() );
      return false;
   }
   auto* const use = reinterpret_cast<bool ( * )()>( dlsym( plugin, "usePlugin" ) );
   const bool right = use != nullptr && use();
   return dlclose( plugin ) == 0 && right;
}

std::size_t bytesInUse() {
   const struct mallinfo2 info = mallinfo2();
   return info.uordblks + info.hblkhd;
}

// The most that is in use after any of `cycles`, or nothing if one fails.
std::optional<std::size_t> mostAfter( unsigned cycles, const char* path ) {
   std::size_t most = 0;
   for( unsigned cycle = 0; cycle < cycles; ++cycle ) {
      if( !loadUseAndUnload( path ) ) {
         return std::nullopt;
      }
      most = std::max( most, bytesInUse() );
   }
   return most;
}

} // namespace

int main( int, char** arguments ) {
   // Within the first cycles, malloc's own cache of blocks that are free fills up.
   const auto first = mostAfter( 20, arguments[1] );
   const auto then = mostAfter( 20, arguments[1] );
   if( !first || !then || *then > *first ) {
      std::printf( "%zu bytes after 20 cycles, %zu after 40\n", first.value_or( 0 ),
                   then.value_or( 0 ) );
      return 1;
   }
   // It was unloaded; otherwise the cycles would prove nothing.
   return dlopen( arguments[1], RTLD_NOW | RTLD_NOLOAD ) == nullptr ? 0 : 1;
}
