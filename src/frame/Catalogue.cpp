// The field catalogue, and the compiler's proof that its names and order follow their rule.
#include <Hardware/FieldId.h>

#include <algorithm>

namespace Hardware {

namespace {

constexpr std::array<CatalogueRow, catalogueSize> catalogue{ {
#define HARDWARE_FIELD_ID( identifier, name, hardwareName ) { identifier, #name, #hardwareName },
#include <Hardware/fields/Catalogue.def>
} };

constexpr bool isCapital( char character ) { return character >= 'A' && character <= 'Z'; }
constexpr char lowered( char character ) {
   return isCapital( character ) ? static_cast<char>( character - 'A' + 'a' ) : character;
}

// The first part of a hardware name becomes lower case; each further part keeps its first character
// and lowers the rest.
constexpr bool namedByRule( const CatalogueRow& row ) {
   std::size_t next = 0;
   bool partBegins = false;
   for( const char character : row.hardwareName ) {
      if( character == '_' ) {
         partBegins = true;
         continue;
      }
      const char expected = partBegins ? character : lowered( character );
      if( next == row.name.size() || row.name[next++] != expected ) {
         return false;
      }
      partBegins = false;
   }
   return next == row.name.size();
}

// The two names that keep a capital after a digit.
constexpr bool keepsCapital( const CatalogueRow& row ) {
   return ( row.identifier == 191 && row.name == "ipQualifierAdditionalHeader1St" &&
            row.hardwareName == "IP_QUALIFIER_ADDITIONAL_HEADER_1ST" ) ||
          ( row.identifier == 192 && row.name == "ipQualifierAdditionalHeader2Nd" &&
            row.hardwareName == "IP_QUALIFIER_ADDITIONAL_HEADER_2ND" );
}

// Identifiers ascend, and hardware names with them, except for IPV6 before IPV4_DIP.
constexpr bool inOrder( const CatalogueRow& left, const CatalogueRow& right ) {
   const bool exception = left.identifier == 182 && left.hardwareName == "IPV6" &&
                          right.identifier == 183 && right.hardwareName == "IPV4_DIP";
   return left.identifier < right.identifier &&
          ( left.hardwareName < right.hardwareName ) != exception;
}

static_assert( std::all_of( catalogue.begin(), catalogue.end(), []( const CatalogueRow& row ) {
   return namedByRule( row ) != keepsCapital( row );
} ) );
static_assert( std::adjacent_find( catalogue.begin(), catalogue.end(),
                                   []( const CatalogueRow& left, const CatalogueRow& right ) {
                                      return !inOrder( left, right );
                                   } ) == catalogue.end() );
static_assert( catalogue.front().identifier == 3 && catalogue.back().identifier == 368 );

} // namespace

const std::array<CatalogueRow, catalogueSize>& fieldCatalogue() { return catalogue; }

} // namespace Hardware
