// What is read ahead of a dump is what would have been read entry by entry, whatever stands there.
#include "DumpTranscript.h"

#include <Vorn/Dump.h>

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Vorn::DumpOptions;
using Vorn::DumpReader;
using Vorn::ImageFormat;
using Vorn::TextBytes;

using Random = std::minstd_rand;

std::size_t below( Random& random, std::size_t end ) {
   return std::uniform_int_distribution<std::size_t>( 0, end - 1 )( random );
}

// An entry of one of the table's variants, or now and then an empty one, or one of no variant.
std::vector<U8> imageFor( Random& random, const std::vector<Vorn::Layout>& layouts ) {
   std::vector<U8> image( layouts.front().bytes() );
   const auto kind = below( random, 20 );
   if( kind == 0 ) {
      return image;
   }
   for( U8& byte : image ) {
      byte = static_cast<U8>( random() >> 8 );
   }
   if( kind > 1 ) {
      const auto& layout = layouts[below( random, kind < 6 ? layouts.size() : 1 )];
      for( const auto& [field, value] : layout.tag() ) {
         layout.set( image, field, value );
      }
   }
   return image;
}

std::string digitsOf( const std::vector<U8>& image ) {
   std::string text;
   Vorn::appendHex( text, image );
   return text;
}

// A line that isn't like the others.
std::string otherLine( Random& random, const std::string& line ) {
   const auto cut = below( random, line.size() );
   const std::array<std::string, 14> others{
      "",
      "# a comment",
      line + " # a comment",
      "  " + line,
      line.substr( 0, cut ),
      line + "00",
      line.substr( 0, cut ) + "g" + line.substr( cut + 1 ),
      "0x" + line,
      "image: " + line,
      "address: 0x5",
      "LifTable 10 0:\n" + line,
      R"({"image":")" + line + "\"}",
      "\xef\xbb\xbf" + line,
      "00000000  00 01 02 03  |....|\n00000004",
   };
   return others[below( random, others.size() )];
}

struct Input {
   DumpOptions options;
   std::string text;
};

Input inputFor( Random& random ) {
   struct Table {
      const char* name;
      U8 chip;
      std::vector<U64> variants;
   };
   static const std::array<Table, 4> tables{ { { "LifTable", 10, { 0, 1, 2, 3, 4 } },
                                               { "TcamActionTable", 10, { 0 } },
                                               { "IvecTable", 10, { 0, 1, 2 } },
                                               { "IsemMgmtReq", 12, { 0, 3, 5, 7 } } } };
   const Table& table = tables[below( random, tables.size() )];
   std::vector<Vorn::Layout> layouts;
   for( const U64 variant : table.variants ) {
      layouts.emplace_back( table.name, table.chip, variant );
   }
   Input input;
   input.options.table = table.name;
   input.options.chip = &Vorn::chipOf( table.chip );
   input.options.isStrict = below( random, 4 ) == 0;
   if( below( random, 3 ) == 0 ) {
      input.options.variant = table.variants[below( random, table.variants.size() )];
   }
   // Some begin near the memory's end.
   const U64 entries = layouts.front().info().entries;
   input.options.first.entry =
      below( random, 2 ) == 0 ? 0 : entries - std::min<U64>( entries, 1 + below( random, 40 ) );
   const bool isBinary = below( random, 3 ) == 0;
   const std::size_t gap = isBinary ? below( random, 2 ) * below( random, 100 ) : 0;
   input.options.stride = gap > 0 ? layouts.front().bytes() + gap : 0;
   input.options.format = isBinary ? ImageFormat::binary : ImageFormat::automatic;
   const char* const lineEnd = below( random, 4 ) == 0 ? "\r\n" : "\n";
   const std::size_t count = below( random, 100 );
   const bool isStream = !isBinary && below( random, 5 ) == 0;
   if( isStream ) {
      input.options.format = ImageFormat::stream;
   }
   for( std::size_t i = 0; i < count; ++i ) {
      const auto image = imageFor( random, layouts );
      if( isBinary ) {
         input.text.append( image.begin(), image.end() );
         input.text.append( i + 1 < count || below( random, 2 ) == 0 ? gap : 0, '\7' );
         continue;
      }
      auto line = digitsOf( image );
      if( below( random, 4 ) == 0 ) {
         line[below( random, line.size() )] = "AbCdEf09"[below( random, 8 )];
      }
      if( below( random, 30 ) == 0 ) {
         line = otherLine( random, line );
      }
      input.text += line + lineEnd;
   }
   if( below( random, 4 ) == 0 && !input.text.empty() ) {
      input.text.resize( below( random, input.text.size() ) );
   }
   return input;
}

// Gives its text in pieces of any length.
class Pieces : public Vorn::ByteSource {
public:
   Pieces( std::string_view text, Random& random ) : rest_( text ), random_( random ) {}

   std::size_t read( char* to, std::size_t size ) override {
      const auto length = rest_.copy( to, std::min( size, 1 + below( random_, 5000 ) ) );
      rest_.remove_prefix( length );
      return length;
   }
   std::string name() const override { return "dump"; }

private:
   std::string_view rest_;
   Random& random_;
};

} // namespace

TEST( DumpAhead, isWhatWouldHaveBeenRead ) {
   std::size_t taken = 0;
   std::size_t lines = 0;
   for( unsigned seed = 1; seed <= 250; ++seed ) {
      Random random( seed );
      const Input input = inputFor( random );
      DumpReader careful( input.options );
      TextBytes bytes( input.text, "dump" );
      careful.begin( bytes );
      const auto expected = Testing::carefully( careful );
      const auto choose = [&]( std::size_t count ) {
         return below( random, 2 ) == 0 ? count : below( random, count + 1 );
      };
      for( const auto runs : { DumpReader::Runs::ofOneLayout, DumpReader::Runs::ofAny } ) {
         DumpReader quick( input.options );
         Pieces pieces( input.text, random );
         quick.begin( pieces );
         ASSERT_EQ( Testing::quickly( quick, runs, choose, taken ), expected )
            << "seed " << seed << '\n'
            << input.text;
      }
      lines += expected.size();
   }
   // Most of it, or nothing has been held against anything.
   EXPECT_GT( taken, 2 * lines / 3 );
}

TEST( DumpAhead, splitsAWholeDump ) {
   const Vorn::Layout lif( "LifTable", 10, 0 );
   const std::string dump( 1000 * lif.bytes(), '\0' );
   DumpOptions options;
   options.table = "LifTable";
   options.chip = &Vorn::chipOf( 10 );
   options.variant = 0;
   DumpReader reader( options );
   TextBytes bytes( dump, "dump" );
   reader.begin( bytes );
   const auto run = reader.ahead();
   EXPECT_EQ( run.count, 1000u );
   EXPECT_EQ( run.stride, 80u );
   EXPECT_EQ( run.images.size(), dump.size() );
   EXPECT_EQ( run.first, ( Vorn::EntryIndex{ 0, 0, 0 } ) );
   reader.skip( 999 );
   ASSERT_TRUE( reader.next() );
   EXPECT_EQ( reader.entry().entry, 999u );
   EXPECT_FALSE( reader.next() );
}

TEST( DumpAhead, takesVariantsTogether ) {
   const Vorn::Layout lif( "LifTable", 10, 0 );
   const Vorn::Layout other( "LifTable", 10, 3 );
   std::string dump;
   for( int i = 0; i < 100; ++i ) {
      const auto& image = i % 3 == 2 ? std::vector<U8>( 80 ) : ( i % 3 ? other : lif ).blank();
      dump.append( image.begin(), image.end() );
   }
   DumpOptions options;
   options.table = "LifTable";
   options.chip = &Vorn::chipOf( 10 );
   DumpReader reader( options );
   TextBytes bytes( dump, "dump" );
   reader.begin( bytes );
   EXPECT_EQ( reader.ahead().count, 1u );
   const auto run = reader.ahead( DumpReader::Runs::ofAny );
   ASSERT_EQ( run.count, 100u );
   ASSERT_EQ( run.layouts.size(), 100u );
   EXPECT_FALSE( run.layout );
   EXPECT_EQ( run.layouts[0]->variant(), 0u );
   EXPECT_EQ( run.layouts[1]->variant(), 3u );
   EXPECT_EQ( run.layouts[2], nullptr );
}

// Somebody who types, or a program that writes now and then, is answered at once.
TEST( DumpAhead, doesNotWaitForMoreThanTheNextEntry ) {
   // Gives one part at a time, and counts them.
   class Parts : public Vorn::ByteSource {
   public:
      explicit Parts( std::vector<std::string> parts ) : parts_( std::move( parts ) ) {}

      std::size_t read( char* to, std::size_t size ) override {
         return given < parts_.size() ? parts_[given++].copy( to, size ) : 0;
      }
      std::string name() const override { return "parts"; }

      std::size_t given = 0;

   private:
      std::vector<std::string> parts_;
   };
   const std::tuple<ImageFormat, std::vector<std::string>, std::size_t> inputs[] = {
      { ImageFormat::automatic, { "0102030405060708\n", "0102030405060708\n" }, 1 },
      { ImageFormat::automatic, { "0102030405060708\r\n", "0102030405060708\r\n" }, 1 },
      { ImageFormat::automatic, { "LifTable", "\n0102030405060708\n" }, 0 },
      { ImageFormat::stream, { "01020304 05060708\n", "01020304 05060708\n" }, 1 },
      { ImageFormat::binary, { "abcdefgh", "abcdefgh" }, 1 },
   };
   for( const auto& [format, parts, count] : inputs ) {
      DumpOptions options;
      options.table = "TcamActionTable";
      options.chip = &Vorn::chipOf( 10 );
      options.format = format;
      DumpReader reader( options );
      Parts source( parts );
      reader.begin( source );
      EXPECT_EQ( reader.ahead().count, count ) << parts.front();
      if( count > 0 ) {
         EXPECT_EQ( source.given, 1u ) << parts.front();
      }
   }
   const std::string row = "  01 02 03 04 05 06 07 08  |........|\n";
   DumpOptions options;
   options.table = "TcamActionTable";
   options.chip = &Vorn::chipOf( 10 );
   DumpReader reader( options );
   Parts source( { "00000000" + row + "00000008" + row + "00000010" + row, "00000018" + row } );
   reader.begin( source );
   ASSERT_TRUE( reader.next() );
   EXPECT_EQ( reader.ahead().count, 2u );
   EXPECT_EQ( source.given, 1u );
}
