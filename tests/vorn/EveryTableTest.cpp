// Every pair of every table through the real program, held against the registry's own views.
#include "Json.h"
#include "RunVorn.h"

#include "Pairs.h"
#include "forms/ImagePrinter.h"
#include "support/Bits.h"
#include "verbs/Encode.h"

#include <Vorn/Compose.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>
#include <sstream>

namespace {

using Testing::Bits;
using Testing::bitsAt;
using Testing::bitsAtAre;
using Testing::hexOf;
using Testing::Json;
using Testing::parsed;

Json pairOf( const Vorn::Layout& layout ) {
   return { { "table", layout.table() },
            { "chip", layout.chip().name },
            { "variant", layout.variant() } };
}

Vorn::PairText argumentsOf( const Vorn::Layout& layout ) {
   return { std::string( layout.table() ), layout.chip().name, std::to_string( layout.variant() ) };
}

Bits randomValue( const Vorn::Field& field, std::mt19937& random ) {
   return bitsAt( Testing::randomImage( 128, random ), 0, field.width );
}

// The image again, from one of the forms in which it may be written: digits, bytes, words and an
// array of words in JSON.
std::vector<U8> readBack( std::span<const U8> image, int form ) {
   std::string text;
   if( form < 2 ) {
      Vorn::appendHex( text, image, form == 0 ? "" : " " );
      return Vorn::imageOf( text ).bytes;
   }
   for( std::size_t i = 0; i < image.size(); i += 4 ) {
      const U8 word[] = { image[i + 3], image[i + 2], image[i + 1], image[i] };
      text += form == 2 ? " 0x" : R"(,"0x)";
      Vorn::appendHex( text, word );
      text += form == 2 ? "" : "\"";
   }
   return Vorn::imageOf( form == 2 ? text : '[' + text.substr( 1 ) + ']' ).bytes;
}

std::string printed( const Vorn::Layout& layout, Vorn::DecodeForm form,
                     const std::vector<U8>& image ) {
   Vorn::ImagePrinter printer( form, false );
   printer.provide( { &layout, 1 } );
   Vorn::DumpEntry entry;
   entry.layout = &layout;
   entry.image = image;
   return std::string( printer.print( { entry, {} } ) );
}

// A value as JSON has it: up to 53 bits are a number, more a string.
Json asJson( const Bits& value ) {
   return ( value >> 53 ).none() ? Json( value.to_ullong() ) : Json( hexOf( value ) );
}

// The cells of the one row of CSV after its header, without the pair and the place.
std::vector<std::string> cellsOf( const std::string& csv ) {
   std::istringstream lines( csv );
   std::string line;
   std::getline( lines, line );
   std::getline( lines, line );
   std::vector<std::string> cells;
   std::istringstream row( line );
   for( std::string cell; std::getline( row, cell, ',' ); ) {
      cells.push_back( cell );
   }
   cells.erase( cells.begin(), cells.begin() + 7 );
   return cells;
}

// The fresh entry of the pair, cut to the width of the memory.
std::vector<U8> freshEntry( const Vorn::Layout& layout ) {
   const auto chip = static_cast<Hardware::ChipType>( layout.chip().number );
   const auto view = Hardware::stringObj( layout.table(), chip, layout.variant() );
   return { view->buf(), view->buf() + std::size_t( 4 ) * view->width() };
}

} // namespace

TEST( EveryTable, programComposesWhatABitLoopComposes ) {
   std::mt19937 random( 20261120 );
   std::string input;
   std::vector<Json> expected;
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      const auto info =
         Hardware::pairInfo( layout.table(), layout.chip().number, layout.variant() ).value();
      const U32 entry = info.entries - 1;
      const U32 array = info.arrayElements - 1;
      const U32 identifier = info.instanceCount - 1u;

      Json line = pairOf( layout );
      line["entry"] = entry;
      line["array"] = array;
      line["identifier"] = identifier;
      Json made = line;
      auto& fields = line["fields"] = Json::object();
      auto image = freshEntry( layout );
      for( const auto& field : layout.fields() ) {
         if( !field.readOnly ) {
            const auto value = randomValue( field, random );
            fields[std::string( field.name )] = hexOf( value );
            bitsAtAre( image, field.offset, field.width, value );
         }
      }
      input += line.dump() + '\n';

      std::string digits;
      Vorn::appendHex( digits, image );
      made["image"] = digits;
      U32 address = 0;
      U8 accessType = 0;
      U8 destBlock = 0;
      made["address"] = nullptr;
      made["accessType"] = nullptr;
      made["destBlock"] = nullptr;
      if( info.hasAddress ) {
         const auto chip = static_cast<Hardware::ChipType>( layout.chip().number );
         ASSERT_TRUE( Hardware::stringObj( layout.table(), chip, layout.variant() )
                         ->getSchanAddress( address, accessType, destBlock,
                                            static_cast<U16>( identifier ), entry,
                                            static_cast<U16>( array ) ) );
         std::ostringstream text;
         text << "0x" << std::hex << address;
         made["address"] = text.str();
         made["accessType"] = accessType;
         made["destBlock"] = destBlock;
      }
      expected.push_back( made );
   }
   ASSERT_FALSE( expected.empty() );

   const auto outcome = Testing::vorn( { "program", "--allow-repeats", "-" }, input );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   std::istringstream lines( outcome.out );
   for( const Json& line : expected ) {
      std::string text;
      ASSERT_TRUE( std::getline( lines, text ) );
      EXPECT_EQ( text, line.dump() );
   }
   EXPECT_EQ( lines.peek(), std::istringstream::traits_type::eof() );
}

TEST( EveryTable, whatIsEncodedDecodesToTheSame ) {
   std::mt19937 random( 20261121 );
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      SCOPED_TRACE( layout.pairText() );
      for( int round = 0; round < 4; ++round ) {
         Vorn::Composer entry( layout, Vorn::Overlap::laterHolds );
         auto image = freshEntry( layout );
         // In a different order each time, so that of two that overlap each is once the later.
         std::vector<Vorn::Field> fields( layout.fields().begin(), layout.fields().end() );
         std::shuffle( fields.begin(), fields.end(), random );
         for( const auto& field : fields ) {
            if( !field.readOnly ) {
               const auto value = randomValue( field, random );
               bitsAtAre( image, field.offset, field.width, value );
               entry.set( entry.open( field.name ),
                          Vorn::parseNumber( hexOf( value ), field.name ) );
            }
         }
         const auto read = readBack( entry.image(), round );
         ASSERT_EQ( read, image );

         Json json;
         std::vector<std::string> cells;
         for( const auto& field : layout.fields() ) {
            const auto value = bitsAt( image, field.offset, field.width );
            json[std::string( field.name )] = asJson( value );
            cells.push_back( field.width <= 64 ? std::to_string( value.to_ullong() )
                                               : hexOf( value ) );
         }
         const auto printedJson = printed( layout, Vorn::DecodeForm::json, read );
         EXPECT_EQ( parsed( printedJson )["fields"].dump(), json.dump() );
         EXPECT_EQ( cellsOf( printed( layout, Vorn::DecodeForm::csv, read ) ), cells );
      }
   }
}

TEST( EveryTable, aTagFieldCannotBeSetToAnythingElse ) {
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      for( const auto& field : layout.fields() ) {
         const std::string name( field.name );
         try {
            const U64 other = layout.value( freshEntry( layout ), field ).word( 0 ) ^ 1;
            Vorn::encode( { argumentsOf( layout ), {}, { name + '=' + std::to_string( other ) } } );
            EXPECT_FALSE( field.readOnly ) << layout.pairText() << ' ' << name;
         } catch( const Vorn::Error& error ) {
            EXPECT_TRUE( field.readOnly );
            EXPECT_EQ( error.message(), "field " + name + " of " + layout.pairText() +
                                           " is read-only: it holds the entry's tag" );
         }
      }
   }
}
