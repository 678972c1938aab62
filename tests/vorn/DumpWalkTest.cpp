// Dumps whose entries are taken many at once print what they print one by one: for all pairs, in
// all forms, whatever stands between the plain ones.
#include "DumpWalkCheck.h"
#include "Folders.h"

#include <Vorn/Chip.h>
#include <Vorn/Layout.h>
#include <Vorn/Text.h>

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using Testing::walked;
using Vorn::DecodeForm;

using Random = std::minstd_rand;

constexpr DecodeForm forms[] = { DecodeForm::csv, DecodeForm::json, DecodeForm::singleLine,
                                 DecodeForm::text };

std::size_t below( Random& random, std::size_t end ) {
   return std::uniform_int_distribution<std::size_t>( 0, end - 1 )( random );
}

// An entry of the layout; now and then one that nobody has written.
std::vector<U8> imageOf( Random& random, const Vorn::Layout& layout ) {
   std::vector<U8> image( layout.bytes() );
   if( below( random, 8 ) == 0 ) {
      return image;
   }
   // Values of all lengths.
   for( U8& byte : image ) {
      byte = below( random, 3 ) == 0 ? U8{ 0 } : static_cast<U8>( random() >> 8 );
   }
   for( const auto& [field, value] : layout.tag() ) {
      layout.set( image, field, value );
   }
   return image;
}

class DumpWalkTest : public testing::Test {
protected:
   // A file of these images in binary, and another one as lines.
   void write( const std::vector<std::vector<U8>>& images, const std::string& between = {} ) {
      std::ofstream binary( folder_ / "images.bin", std::ios::binary );
      std::ofstream lines( folder_ / "images.txt" );
      for( const auto& image : images ) {
         binary.write( reinterpret_cast<const char*>( image.data() ),
                       static_cast<std::streamsize>( image.size() ) );
         std::string line;
         Vorn::appendHex( line, image );
         lines << line << '\n' << ( &image == &images[images.size() / 2] ? between : "" );
      }
   }

   // Expects of both files in this form the same in both ways, and counts those that were taken
   // many at once.
   void expectSame( Vorn::DumpArguments arguments, DecodeForm form ) {
      for( const auto& [name, format] :
           { std::pair( "images.bin", Vorn::ImageFormat::binary ),
             std::pair( "images.txt", Vorn::ImageFormat::automatic ) } ) {
         arguments.paths = { folder_ / name };
         arguments.format = format;
         const auto careful = answer( arguments, form, false );
         const auto quick = answer( arguments, form, true );
         ASSERT_EQ( quick.text, careful.text );
         EXPECT_EQ( careful.lines, 0u );
         ++walks_;
         quick_ += quick.lines > 0 || form == DecodeForm::text ? 1 : 0;
      }
   }

   std::size_t walks_ = 0;
   std::size_t quick_ = 0;

private:
   // With what is reported on standard error.
   static Testing::Walked answer( const Vorn::DumpArguments& arguments, DecodeForm form,
                                  bool takesBlocks ) {
      testing::internal::CaptureStderr();
      auto result = walked( arguments, form, takesBlocks );
      result.text += testing::internal::GetCapturedStderr();
      return result;
   }

   Testing::TemporaryFolder folder_;
};

} // namespace

TEST_F( DumpWalkTest, allPairsInAllForms ) {
   Random random( 1 );
   std::size_t pairs = 0;
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      for( const Vorn::Layout& layout : Vorn::layoutsOn( chip ) ) {
         std::vector<std::vector<U8>> images;
         for( int i = 0; i < 9; ++i ) {
            images.push_back( imageOf( random, layout ) );
         }
         write( images );
         Vorn::DumpArguments arguments;
         arguments.pair = { std::string( layout.table() ), chip.name,
                            std::to_string( layout.variant() ) };
         arguments.printsEmpty = pairs % 2 == 0;
         expectSame( arguments, forms[pairs % std::size( forms )] );
         ++pairs;
      }
   }
   EXPECT_GT( pairs, 400u );
   EXPECT_EQ( quick_, walks_ );
}

TEST_F( DumpWalkTest, mixedVariantsWithConditions ) {
   Random random( 2 );
   std::vector<Vorn::Layout> layouts;
   for( const U64 variant : { 0u, 1u, 2u, 3u } ) {
      layouts.emplace_back( "LifTable", 10, variant );
   }
   const std::string others[] = { "",
                                  "# a comment\n",
                                  "\n",
                                  "12345\n",
                                  "LifTable 10 1: 00\n",
                                  "zz\n",
                                  std::string( 158, '0' ) + "zz\n",
                                  std::string( 160, 'f' ) + "\n" };
   for( const std::string& between : others ) {
      std::vector<std::vector<U8>> images;
      for( int i = 0; i < 100; ++i ) {
         const auto& layout = layouts[below( random, layouts.size() )];
         images.push_back( imageOf( random, layout ) );
         if( i % 3 == 0 && layout.has( "vsi" ) ) {
            layout.set( images.back(), "vsi", U64{ below( random, 4 ) } );
         }
      }
      write( images, between );
      for( const char* const where : { "", "vsi < 2", "mdbEntry > 5", "resultType in 1..30" } ) {
         Vorn::DumpArguments arguments;
         arguments.pair = { "LifTable", "10", below( random, 4 ) == 0 ? "0" : "" };
         arguments.where = where;
         arguments.printsEmpty = below( random, 2 ) == 0;
         arguments.fields = below( random, 2 ) == 0 ? "vsi,mdbEntry,eei" : "";
         expectSame( arguments, forms[below( random, std::size( forms ) )] );
      }
   }
}

TEST_F( DumpWalkTest, placesUpToTheLast ) {
   Random random( 3 );
   const Vorn::Layout layout( "TcamActionTable", 10 );
   std::vector<std::vector<U8>> images;
   for( int i = 0; i < 20; ++i ) {
      images.push_back( imageOf( random, layout ) );
   }
   write( images );
   Vorn::DumpArguments arguments;
   arguments.pair = { "TcamActionTable", "10", "0" };
   for( const U64 last : { 1u, 19u, 20u, 100u } ) {
      arguments.split.firstEntry = std::to_string( layout.info().entries - last );
      for( const DecodeForm form : forms ) {
         expectSame( arguments, form );
      }
   }
}

// Enough for several threads: in order, and with the report of entries that are left out.
TEST_F( DumpWalkTest, manyByThreads ) {
   Random random( 4 );
   const Vorn::Layout layout( "LifTable", 10, 0 );
   std::vector<std::vector<U8>> images;
   for( unsigned i = 0; i < 20000; ++i ) {
      images.push_back( imageOf( random, layout ) );
   }
   write( images, "bad\n" );
   Vorn::DumpArguments arguments;
   arguments.pair = { "LifTable", "10", "" };
   expectSame( arguments, DecodeForm::csv );
   arguments.where = "vsi & 7 == 3";
   expectSame( arguments, DecodeForm::json );
   expectSame( arguments, DecodeForm::text );
}
