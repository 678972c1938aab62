// Rows of CSV compose the entries that they say, and each bad one is an Error with its column.
#include "Pairs.h"

#include <Vorn/Rows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Testing::errorOf;
using Vorn::Layout;

std::vector<U8> imageOf( const Vorn::Composed& entry ) {
   return { entry.image.begin(), entry.image.end() };
}

TEST( Rows, AreEntries ) {
   Vorn::RowComposer composer;
   EXPECT_FALSE( composer.header( "# ports" ) );
   EXPECT_FALSE( composer.header( " " ) );
   ASSERT_TRUE( composer.header( "\xef\xbb\xbftable,chip, entry ,\"vsi\",vlanEditVid1\r" ) );
   const Layout lif( "LifTable", 10 );
   const auto entry = composer.compose( "LifTable,BCM88690_B0,4097,2000, \"0x64\" \r" );
   ASSERT_TRUE( entry );
   EXPECT_EQ( entry->index.entry, 4097u );
   EXPECT_EQ( entry->address->schanAddress, 4097u );
   EXPECT_EQ( imageOf( *entry ),
              Vorn::compose( lif, { { "vsi", 2000 }, { "vlanEditVid1", 100 } } ) );
   // An empty cell says nothing.
   const auto other = composer.compose( "LifTable,10,,,mask" );
   ASSERT_TRUE( other );
   EXPECT_EQ( other->index.entry, 0u );
   EXPECT_EQ( imageOf( *other ), Vorn::compose( lif, { { "vlanEditVid1", 0xfff } } ) );
   EXPECT_FALSE( composer.compose( "" ) );
   EXPECT_FALSE( composer.compose( " # LifTable,10,1,2,3" ) );
   EXPECT_FALSE( composer.compose( ", ,\"\",," ) );
}

TEST( Rows, MayHaveTabsAroundTheirOnlyCell ) {
   Vorn::RowComposer composer( { "TcamActionTable", &Vorn::chipOf( 10 ), {} } );
   ASSERT_TRUE( composer.header( "\taction\t\r" ) );
   EXPECT_TRUE( composer.compose( "\t5\t" ) );
}

// As spreadsheets and statistics programs write them.
TEST( Rows, MayHaveQuotesAroundAllCells ) {
   Vorn::RowComposer composer;
   ASSERT_TRUE( composer.header( R"("table","chip","entry","vsi")" ) );
   const auto entry = composer.compose( R"("LifTable","10","5","2000")" );
   ASSERT_TRUE( entry );
   EXPECT_EQ( entry->index.entry, 5u );
   EXPECT_EQ( imageOf( *entry ), Vorn::compose( Layout( "LifTable", 10 ), { { "vsi", 2000 } } ) );
}

TEST( Rows, TakeFromTheOptionsWhatTheyDontSay ) {
   Vorn::RowComposer composer( { "LifTable", &Vorn::chipOf( 10 ), 3 } );
   ASSERT_TRUE( composer.header( "vsi,table,chip,variant" ) );
   const auto image = Vorn::compose( Layout( "LifTable", 10, 3 ), { { "vsi", 7 } } );
   EXPECT_EQ( imageOf( *composer.compose( "7,,," ) ), image );
   EXPECT_EQ( imageOf( *composer.compose( "7,LifTable,BCM88690_B0,3" ) ), image );
   const auto refused = [&]( const std::string& row ) {
      const auto message = errorOf( [&] { composer.compose( row ); } );
      return std::to_string( composer.column() ) + ' ' + message;
   };
   EXPECT_EQ( refused( "7,OutAcBank,," ), "3 the row is one of OutAcBank, not of LifTable" );
   EXPECT_EQ( refused( "7,,2," ), "4 the row is one of BCM88650_B0, not of BCM88690_B0" );
   EXPECT_EQ( refused( "7,,,4" ), "5 the row is one of variant 4, not of variant 3" );
}

// What is printed of an entry composes it again: the keys of a record, and all of its fields.
TEST( Rows, AreReadAsTheyArePrintedOnEveryPair ) {
   for( const Layout& layout : Testing::allLayouts() ) {
      SCOPED_TRACE( layout.pairText() );
      auto image = layout.blank();
      std::string header = "table,chip,variant,entry,array,identifier,address";
      std::string row = std::string( layout.table() ) + ',' + layout.chip().name + ',' +
                        std::to_string( layout.variant() ) + ",0,0,0,";
      if( const auto address = layout.address( {} ) ) {
         row += Vorn::hexOf( address->schanAddress );
      }
      for( const Vorn::Field& field : layout.fields() ) {
         if( !field.readOnly ) {
            layout.set( image, field, Vorn::Value::onesOf( field.width ) );
         }
      }
      for( const Vorn::Field& field : layout.fields() ) {
         if( field.readOnly ) {
            layout.set( image, field, layout.value( layout.blank(), field ) );
         }
      }
      for( const Vorn::Field& field : layout.fields() ) {
         header += ',' + std::string( field.name );
         row += ',' + Vorn::hexOf( layout.value( image, field ) );
      }
      Vorn::RowComposer composer;
      ASSERT_TRUE( composer.header( header ) );
      const auto entry = composer.compose( row );
      ASSERT_TRUE( entry );
      EXPECT_EQ( imageOf( *entry ), image );
   }
}

struct Refused {
   std::string line; // a caret stands before what is wrong, and is taken out
   std::string message;
};

template<class Take>
void expectAll( const std::vector<Refused>& all, Take take ) {
   for( Refused refused : all ) {
      SCOPED_TRACE( refused.line );
      const auto caret = refused.line.find( '^' );
      refused.line.erase( caret, 1 );
      Vorn::RowComposer composer;
      EXPECT_EQ( errorOf( [&] { take( composer, refused.line ); } ), refused.message );
      EXPECT_EQ( composer.column(), caret + 1 );
   }
}

TEST( Rows, RefuseBadHeaders ) {
   const std::string keys = "; the first row names keys such as table, chip and entry, and fields";
   expectAll(
      { { "table,chip,^entyr", "no key or field \"entyr\"; did you mean entry?" },
        { "table,chip,^VSI", "no key or field \"VSI\"; did you mean vsi?" },
        { "table,chip,^fields", "no key or field \"fields\"" + keys },
        { "table,chip,^zzzz", "no key or field \"zzzz\"" + keys },
        { "table,chip,^1", "no key or field \"1\"" + keys },
        { "table,chip,vsi,^vsi", "a second column \"vsi\"" },
        { "table,chip,^table", "a second column \"table\"" },
        { "table,chip,entry,entry,^entry", "a second column \"entry\"" },
        { "table,^,chip", "a column has no name" },
        { "table,chip,^", "a column has no name" },
        { "^chip,vsi", "no column \"table\"" + keys },
        { "^table,vsi", "no column \"chip\"" + keys },
        { "table^;chip;vsi", "semicolons between the cells; write commas" },
        { "table^\tchip\tvsi", "tabs between the cells; write commas" },
        { "^{\"table\":\"LifTable\",\"chip\":10}", "the file is JSON, not CSV; leave --csv out" },
        { "table,^\"chip", "the cell \"\"chip\" has no closing quote; a cell ends on its line" } },
      []( Vorn::RowComposer& composer, const std::string& line ) { composer.header( line ); } );
}

TEST( Rows, RefuseBadRows ) {
   expectAll(
      { { "^LifTable,10", "the row has 2 cells, the header 8" },
        { "^LifTable", "the row has 1 cell, the header 8" },
        { "^LifTable,10,,,,1,,,", "the row has 9 cells, the header 8" },
        { "LifTable,10,,,,^\"1,,",
          "the cell \"\"1,,\" has no closing quote; a cell ends on its line" },
        { "LifTable,10,,,,\"1\" ^2,,", "a cell in quotes ends before \"2,,\"; a comma follows it, "
                                       "and a quote in it is doubled" },
        { "^,10,1,,,,,", "the row doesn't say its table; its cell of column \"table\" is empty" },
        { "^LifTable,,1,,,,,",
          "the row doesn't say its chip type; its cell of column \"chip\" is empty" },
        { "^LifTabel,10,,,,,,", "unknown table \"LifTabel\"; did you mean LifTable?" },
        { "LifTable,^BCM88690_BO,,,,,,",
          "unknown chip \"BCM88690_BO\"; did you mean BCM88690_B0?" },
        { "LifTable,^010,,,,,,",
          "bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8" },
        { "LifTable,10,^5,,,,,", "LifTable has no variant 5 on BCM88690_B0; allowed: 0-4,6-11" },
        { "LifTable,10,^01,,,,,",
          "bad number \"01\" for variant; a leading 0 may mean octal; write 1" },
        { "LifTable,10,,^-1,,,,", "negative value -1 for entry; a value is 0 or more" },
        { "LifTable,10,,^4294967295,,,,",
          "entry 4294967295 is out of range in LifTable on BCM88690_B0 variant 0; allowed: 0 to "
          "4294967294" },
        { "LifTable,10,,5,^0x6,,,", "address 0x6 is not that of entry 5, which is 0x5" },
        { "LifTable,10,,,^0x100000000,,,",
          "address 0x100000000 is out of range; it is at most 0xffffffff" },
        { "LifTable,10,,,,^010,,",
          "bad value \"010\" for vsi; a leading 0 may mean octal; write 10 or 0x8" },
        { "LifTable,10,,,,^99999999,,",
          "value 99999999 of field vsi is too large; its 15 bits in LifTable on BCM88690_B0 "
          "variant 0 hold at most 0x7fff" },
        { "TcamActionTable,10,,,,^1,,",
          "no field \"vsi\" in TcamActionTable on BCM88690_B0; allowed: action" },
        { "LifTable,10,,,,,^00,",
          "the image has 1 bytes; the fields of LifTable on BCM88690_B0 variant 0 need 23, a "
          "whole entry has 80" } },
      []( Vorn::RowComposer& composer, const std::string& line ) {
         ASSERT_TRUE( composer.header( "table,chip,variant,entry,address,vsi,image,learnEnable" ) );
         composer.compose( line );
      } );
}

// Unlike the fields of a record, columns have no order in which the later one would win.
TEST( Rows, RefuseFieldsThatContradictEachOther ) {
   Vorn::RowComposer composer( { "LifTable", &Vorn::chipOf( 10 ), 3 } );
   ASSERT_TRUE( composer.header( "destination,mdbEntry,from,image" ) );
   const std::string row = "1,0x94" + std::string( 43, '0' ) + ",,";
   EXPECT_EQ( errorOf( [&] { composer.compose( row ); } ).substr( 0, 58 ),
              "fields destination and mdbEntry of LifTable on BCM88690_B0" );
   EXPECT_EQ( composer.column(), 3u );
   EXPECT_EQ( errorOf( [&] { composer.compose( ",,00,00" ); } ),
              "\"from\" and \"image\" are both an image to begin with; give one" );
   EXPECT_EQ( composer.column(), 6u );
}

} // namespace
