// Values of fields in every notation that vorn takes.
#include "Notations.h"

#include "support/Bits.h"

#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include <arpa/inet.h>

namespace Fuzz {

using Testing::Bits;
using Testing::Image;

namespace {

// Notations of a number, which may not have room for all of it.

// The lowest bytes, the most significant first.
Image sent( const Bits& number, unsigned bytes ) {
   Image image( bytes );
   Testing::bitsAtAre( image, 0, 8 * bytes, number );
   std::reverse( image.begin(), image.end() );
   return image;
}

std::string asAddress( int family, const Image& image ) {
   std::array<char, INET6_ADDRSTRLEN> text{};
   return ::inet_ntop( family, image.data(), text.data(), text.size() );
}

Json asNumber( const Bits& number ) { return Testing::fromBits<U64>( number ); }
Json asDecimal( const Bits& number ) { return asNumber( number ).dump(); }
Json asHexadecimal( const Bits& number ) {
   return "0x" + digitsOf( sent( number, Vorn::Value::maxBits / 8 + 1 ) );
}
Json asBinary( const Bits& number ) { return "0b" + number.to_string(); }
Json asIpv4( const Bits& number ) { return asAddress( AF_INET, sent( number, 4 ) ); }
Json asIpv6( const Bits& number ) { return asAddress( AF_INET6, sent( number, 16 ) ); }
Json asMac( const Bits& number ) {
   std::string text = digitsOf( sent( number, 6 ) );
   for( std::size_t at = 10; at > 0; at -= 2 ) {
      text.insert( at, 1, ':' );
   }
   return text;
}
Json asMask( const Bits& ) { return Vorn::maskWord; }

} // namespace

Json someValue( FuzzedDataProvider& input, unsigned width ) {
   constexpr Json ( *notations[] )( const Bits& ) = { asNumber, asDecimal, asHexadecimal, asBinary,
                                                      asIpv4,   asIpv6,    asMac,         asMask };
   const auto bits = input.ConsumeIntegralInRange( 0u, width + 1 );
   auto bytes = input.ConsumeBytes<U8>( ( bits + 7 ) / 8 );
   bytes.resize( sizeof( Bits ) );
   Bits number = Testing::bitsAt( bytes, 0, bits );
   if( bits > 0 ) {
      number.set( bits - 1 );
   }
   return input.PickValueInArray( notations )( number );
}

} // namespace Fuzz
