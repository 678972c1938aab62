// The field catalogue: which identifiers there are, and the rules that their names follow.
#include <Hardware/FieldId.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

// The numbers that no field has, up to the last one in use.
// clang-format off
constexpr unsigned unused[] = { 0,   1,   2,   46,  48,  49,  54,  55,  56,  57,  58,  59,  76,
                                142, 143, 152, 153, 154, 157, 164, 167, 178, 226, 238, 239, 240,
                                245, 276, 280, 281, 282, 283, 289, 290, 292, 318, 337 };
// clang-format on

const Hardware::CatalogueRow* findRow( U32 identifier ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   const auto row = std::find_if( catalogue.begin(), catalogue.end(), [identifier]( auto& one ) {
      return one.identifier == identifier;
   } );
   return row == catalogue.end() ? nullptr : row;
}

// The field name that the rule makes of a hardware name.
std::string ruledName( std::string_view hardwareName ) {
   std::string name;
   bool first = true;      // in the first part
   bool beginning = false; // at the first character of a further part
   for( const char letter : hardwareName ) {
      if( letter == '_' ) {
         first = false;
         beginning = true;
         continue;
      }
      const bool kept = !first && beginning;
      name +=
         kept || letter < 'A' || letter > 'Z' ? letter : static_cast<char>( letter - 'A' + 'a' );
      beginning = false;
   }
   return name;
}

// The same list makes the constants and the catalogue. That its rows are right is tested with each
// class's fields, and in AllClassesTest.cpp that no row is left over.
static_assert( std::is_same_v<decltype( Hardware::FieldId::vlanDomain ), const U32> );
static_assert( Hardware::FieldId::vlanDomain == 351 );
static_assert( Hardware::FieldId::action == 3 );
static_assert( Hardware::FieldId::zeroPadding == 368 );

TEST( Catalogue, IdentifiersAscendFrom3To368AndLeaveOutTheUnused ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   std::set<unsigned> numbers( std::begin( unused ), std::end( unused ) );
   ASSERT_EQ( numbers.size(), std::size( unused ) );
   unsigned before = 0;
   for( const auto& row : catalogue ) {
      EXPECT_GT( row.identifier, before ) << row.name;
      before = row.identifier;
      EXPECT_TRUE( numbers.insert( row.identifier ).second ) << row.identifier;
   }
   EXPECT_EQ( catalogue.front().identifier, 3u );
   EXPECT_EQ( catalogue.back().identifier, 368u );
   // Used and unused numbers together are all from 0 to 368.
   EXPECT_EQ( numbers.size(), 369u );
   EXPECT_EQ( *numbers.rbegin(), 368u );
}

TEST( Catalogue, NoNameStandsTwice ) {
   std::set<std::string_view> names, hardwareNames;
   for( const auto& row : Hardware::fieldCatalogue() ) {
      EXPECT_TRUE( names.insert( row.name ).second ) << row.name;
      EXPECT_TRUE( hardwareNames.insert( row.hardwareName ).second ) << row.hardwareName;
   }
}

TEST( Catalogue, NamesFollowTheHardwareNamesButForTwo ) {
   std::vector<unsigned> exceptions;
   for( const auto& row : Hardware::fieldCatalogue() ) {
      if( ruledName( row.hardwareName ) != row.name ) {
         exceptions.push_back( row.identifier );
      }
   }
   EXPECT_EQ( exceptions, ( std::vector<unsigned>{ 191, 192 } ) );

   ASSERT_NE( findRow( 191 ), nullptr );
   EXPECT_EQ( findRow( 191 )->name, "ipQualifierAdditionalHeader1St" );
   EXPECT_EQ( ruledName( "IP_QUALIFIER_ADDITIONAL_HEADER_1ST" ), "ipQualifierAdditionalHeader1st" );
   ASSERT_NE( findRow( 192 ), nullptr );
   EXPECT_EQ( findRow( 192 )->name, "ipQualifierAdditionalHeader2Nd" );
   EXPECT_EQ( ruledName( "IP_QUALIFIER_ADDITIONAL_HEADER_2ND" ), "ipQualifierAdditionalHeader2nd" );

   EXPECT_EQ( ruledName( "AC_0_ACTION_DROP" ), "ac0ActionDrop" );
   EXPECT_EQ( ruledName( "ENTRY_1_N_TAGS_TO_REMOVE" ), "entry1NTagsToRemove" );
   EXPECT_EQ( ruledName( "C_VID" ), "cVid" );
   EXPECT_EQ( ruledName( "IPV6" ), "ipv6" );
}

TEST( Catalogue, HardwareNamesAscendButForOne ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   std::vector<unsigned> outOfOrder;
   for( std::size_t place = 1; place < catalogue.size(); ++place ) {
      if( catalogue[place].hardwareName < catalogue[place - 1].hardwareName ) {
         outOfOrder.push_back( catalogue[place].identifier );
      }
   }
   // IPV6 at 182 is before IPV4_DIP, and the only name out of order.
   EXPECT_EQ( outOfOrder, std::vector<unsigned>{ 183 } );
   ASSERT_NE( findRow( 182 ), nullptr );
   EXPECT_EQ( findRow( 182 )->hardwareName, "IPV6" );
   ASSERT_NE( findRow( 181 ), nullptr );
   ASSERT_NE( findRow( 183 ), nullptr );
   EXPECT_LT( findRow( 181 )->hardwareName, findRow( 183 )->hardwareName );

   // In bytes, a capital sorts before "_".
   EXPECT_LT( Hardware::FieldId::action, Hardware::FieldId::ac0ActionDrop );
   EXPECT_LT( Hardware::FieldId::cosProfile, Hardware::FieldId::cVid );
}

TEST( Catalogue, KeepsTheMisspeltNameBesideTheOther ) {
   ASSERT_NE( findRow( 70 ), nullptr );
   EXPECT_EQ( findRow( 70 )->name, "doubleDataEntry" );
   EXPECT_EQ( findRow( 70 )->hardwareName, "DOUBLE_DATA_ENTRY" );
   ASSERT_NE( findRow( 75 ), nullptr );
   EXPECT_EQ( findRow( 75 )->name, "dubleDataEntry" );
   EXPECT_EQ( findRow( 75 )->hardwareName, "DUBLE_DATA_ENTRY" );
}

} // namespace
