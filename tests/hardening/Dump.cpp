// Prints everything about every pair that the registry reaches: all builds must print the same.
#include <Hardware/Registry.h>

#include <cstdio>
#include <random>

namespace {

void printBytes( const char* title, const U8* bytes, unsigned count ) {
   std::printf( "  %s ", title );
   for( unsigned byte = 0; byte < count; ++byte ) {
      std::printf( "%02x", bytes[byte] );
   }
   std::printf( "\n" );
}

void printAddresses( const Kelvar::AsicBase& view, const Hardware::PairInfo& info ) {
   for( unsigned identifier = 0; identifier < info.instanceCount; ++identifier ) {
      for( const U32 tableEntry : { U32{ 0 }, info.entries / 2, info.entries - 1 } ) {
         for( const U32 arrayIndex : { U32{ 0 }, info.arrayElements - 1 } ) {
            U32 address = 0;
            U8 accessType = 0;
            U8 destBlock = 0;
            const bool found =
               view.getSchanAddress( address, accessType, destBlock, static_cast<U16>( identifier ),
                                     tableEntry, static_cast<U16>( arrayIndex ) );
            std::printf( "  address %u %u %u: %d %#x %u %u\n", identifier, tableEntry, arrayIndex,
                         found, address, accessType, destBlock );
         }
      }
   }
}

// The narrow fields set to random values, one after the other; then the fields read from random
// bytes.
void printFields( Kelvar::AsicBase& view, std::string_view name, std::mt19937& random ) {
   const auto fields = Hardware::classFields( name );
   for( const auto& field : fields ) {
      if( !view.isFieldValid( field.identifier ) || field.readOnly || field.valueBits > 64 ) {
         continue;
      }
      const U16 width = view.fieldWidth( field.identifier );
      const U64 value = ( U64{ random() } << 32 | random() ) >> ( 64 - width );
      view.setField64( field.identifier, value );
   }
   printBytes( "encoded", view.buf(), view.len() );
   for( unsigned byte = 0; byte < view.len(); ++byte ) {
      view.buf()[byte] = static_cast<U8>( random() );
   }
   for( const auto& field : fields ) {
      if( !view.isFieldValid( field.identifier ) ) {
         std::printf( "  %.*s: none\n", static_cast<int>( field.name.size() ), field.name.data() );
         continue;
      }
      std::printf( "  %.*s %u:%u", static_cast<int>( field.name.size() ), field.name.data(),
                   view.fieldOffset( field.identifier ), view.fieldWidth( field.identifier ) );
      for( unsigned word = 0; 64 * word < field.valueBits; ++word ) {
         std::printf( " %#llx", static_cast<unsigned long long>(
                                   view.stringField( field.name, static_cast<U16>( word ) ) ) );
      }
      std::printf( "\n" );
   }
}

void printPair( std::string_view name, unsigned chipType, U8 variant,
                const Hardware::PairInfo& info ) {
   const auto view =
      Hardware::stringObj( name, static_cast<Hardware::ChipType>( chipType ), variant );
   std::printf( "%.*s %u %u: width %u, %u entries of %u, %u fields, %u instances\n",
                static_cast<int>( name.size() ), name.data(), chipType, variant, info.width,
                info.entries, info.arrayElements, info.fieldCount, info.instanceCount );
   printBytes( "fresh", view->buf(), view->len() );
   printBytes( "mask", view->allFieldsMask().bytes(), view->len() );
   if( info.hasAddress ) {
      printAddresses( *view, info );
   }
   std::mt19937 random( 256 * chipType + variant );
   printFields( *view, name, random );
}

} // namespace

int main() {
   for( const std::string_view name : Hardware::classNames() ) {
      for( unsigned chipType = 0; chipType < 256; ++chipType ) {
         for( unsigned variant = 0; variant < 256; ++variant ) {
            const auto number = static_cast<U8>( variant );
            const auto info = Hardware::pairInfo( name, chipType, number );
            if( info && ( info->hasVariants || variant == 0 ) ) {
               printPair( name, chipType, number, *info );
            }
         }
      }
   }
}
