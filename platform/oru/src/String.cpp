// Hash and output of the run-time's string.
#include <Oru/String.h>

#include <cstdint>
#include <ostream>

namespace Oru {

namespace Impl {

std::size_t StringData<char>::hash() const {
   std::uint64_t hash = 0xcbf29ce484222325u;
   for( const char character : text_ ) {
      hash ^= static_cast<unsigned char>( character );
      hash *= 0x100000001b3u;
   }
   return hash;
}

} // namespace Impl

std::ostream& operator<<( std::ostream& out, const String& text ) { return out << text.view(); }

} // namespace Oru
