// Every pair of every table through the real program, held against the registry's own views.
#include "RunVorn.h"

#include "Pairs.h"
#include "forms/ImagePrinter.h"
#include "verbs/Encode.h"

#include <Vorn/Compose.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>

#include <Hardware/Registry.h>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <span>
#include <sstream>

namespace {

using Json = nlohmann::ordered_json;

void forEveryPair( const std::function<void( const Vorn::Layout& )>& action ) {
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      action( layout );
   }
}

Json pairOf( const Vorn::Layout& layout ) {
   return { { "table", layout.table() },
            { "chip", layout.chip().name },
            { "variant", layout.variant() } };
}

Vorn::PairText argumentsOf( const Vorn::Layout& layout ) {
   return { std::string( layout.table() ), layout.chip().name, std::to_string( layout.variant() ) };
}

constexpr char digitNames[] = "0123456789abcdef";

// A value of this width whose bits differ from field to field.
std::string valueOf( const Vorn::Field& field ) {
   std::string digits;
   for( unsigned bit = 0; bit < field.width; bit += 4 ) {
      const unsigned rest = field.width - bit;
      const unsigned digit = ( bit + field.identifier * 5 + 3 ) % 16;
      digits += digitNames[rest < 4 ? digit % ( 1u << rest ) : digit];
   }
   const std::string text( digits.rbegin(), digits.rend() );
   const auto first = std::min( text.find_first_not_of( '0' ), text.size() - 1 );
   return "0x" + text.substr( first );
}

bool bitOf( const std::string& hex, unsigned bit ) {
   const char digit = hex[hex.size() - 1 - bit / 4];
   const unsigned number = static_cast<unsigned>( digit <= '9' ? digit - '0' : digit - 'a' + 10 );
   return number >> bit % 4 & 1;
}

// Writes the value into the image bit by bit.
void fieldIs( std::vector<U8>& image, const Vorn::Field& field, const std::string& value ) {
   const std::string digits = value.substr( 2 );
   for( unsigned bit = 0; bit < field.width; ++bit ) {
      const unsigned place = field.offset + bit;
      const bool set = bit / 4 < digits.size() && bitOf( digits, bit );
      const auto mask = static_cast<U8>( 1u << place % 8 );
      image[place / 8] =
         static_cast<U8>( set ? image[place / 8] | mask : image[place / 8] & ~mask );
   }
}

std::string hexOf( const std::vector<U8>& image ) {
   std::string text;
   for( const U8 byte : image ) {
      text += { digitNames[byte >> 4], digitNames[byte & 15] };
   }
   return text;
}

// Reads the value from the image bit by bit.
std::string fieldOf( const std::vector<U8>& image, const Vorn::Field& field ) {
   std::string digits( ( field.width + 3u ) / 4, '0' );
   for( unsigned bit = 0; bit < field.width; ++bit ) {
      const unsigned place = field.offset + bit;
      if( image[place / 8] >> place % 8 & 1 ) {
         char& digit = digits[digits.size() - 1 - bit / 4];
         const auto number = std::string_view( digitNames ).find( digit ) | 1u << bit % 4;
         digit = digitNames[number];
      }
   }
   return "0x" + digits.substr( std::min( digits.find_first_not_of( '0' ), digits.size() - 1 ) );
}

std::string randomValue( unsigned width, std::mt19937_64& random ) {
   std::string digits;
   for( unsigned bit = 0; bit < width; bit += 4 ) {
      digits.insert( digits.begin(), digitNames[random() % ( 1u << std::min( width - bit, 4u ) )] );
   }
   return "0x" + digits;
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

// A number as JSON has it: up to 53 bits are a number, more a string.
Json asJson( const std::string& value ) {
   const auto number = Vorn::parseNumber( value, "value" );
   return number.bits() <= 53 ? Json( number.word( 0 ) ) : Json( value );
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
   std::string input;
   std::vector<Json> expected;
   forEveryPair( [&]( const Vorn::Layout& layout ) {
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
            const auto value = valueOf( field );
            fields[std::string( field.name )] = value;
            fieldIs( image, field, value );
         }
      }
      input += line.dump() + '\n';

      made["image"] = hexOf( image );
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
   } );
   ASSERT_FALSE( expected.empty() );

   const auto outcome = Testing::vorn( { "program", "-" }, input );
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

TEST( EveryTable, decodeFindsEachFieldAlone ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      for( const auto& field : layout.fields() ) {
         std::vector<U8> image( layout.bytes() );
         const auto value = valueOf( field );
         fieldIs( image, field, value );
         const Json decoded = Json::parse( printed( layout, Vorn::DecodeForm::json, image ) );
         ASSERT_EQ( decoded["fields"].size(), layout.fields().size() );
         EXPECT_EQ( decoded["fields"][std::string( field.name )], asJson( value ) )
            << layout.pairText() << ' ' << field.name;
         std::size_t position = 0;
         for( const auto& [name, ignored] : decoded["fields"].items() ) {
            EXPECT_EQ( name, layout.fields()[position++].name );
         }
      }
   } );
}

TEST( EveryTable, whatIsEncodedDecodesToTheSame ) {
   std::mt19937_64 random( 20261121 );
   forEveryPair( [&]( const Vorn::Layout& layout ) {
      SCOPED_TRACE( layout.pairText() );
      for( int round = 0; round < 4; ++round ) {
         Vorn::Composer entry( layout, Vorn::Overlap::laterHolds );
         auto image = freshEntry( layout );
         // In an order of their own each time, so that of two that overlap each is once the later.
         std::vector<std::size_t> positions( layout.fields().size() );
         std::iota( positions.begin(), positions.end(), std::size_t( 0 ) );
         std::shuffle( positions.begin(), positions.end(), random );
         for( const std::size_t position : positions ) {
            const auto& field = layout.fields()[position];
            if( !field.readOnly ) {
               const auto value = randomValue( field.width, random );
               fieldIs( image, field, value );
               entry.set( entry.open( field.name ), Vorn::parseNumber( value, field.name ) );
            }
         }
         const auto read = readBack( entry.image(), round );
         ASSERT_EQ( read, image );

         const auto csv = cellsOf( printed( layout, Vorn::DecodeForm::csv, read ) );
         const Json json = Json::parse( printed( layout, Vorn::DecodeForm::json, read ) );
         ASSERT_EQ( csv.size(), layout.fields().size() );
         ASSERT_EQ( json["fields"].size(), layout.fields().size() );
         for( std::size_t i = 0; i < csv.size(); ++i ) {
            const auto& field = layout.fields()[i];
            const auto value = fieldOf( image, field );
            EXPECT_EQ( json["fields"][std::string( field.name )], asJson( value ) ) << field.name;
            EXPECT_EQ( csv[i], field.width <= 64
                                  ? std::to_string( std::stoull( value, nullptr, 16 ) )
                                  : value )
               << field.name;
         }
      }
   } );
}

TEST( EveryTable, aTagFieldCannotBeSetToAnythingElse ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
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
   } );
}

TEST( EveryTable, aFieldThatOnlyOtherPairsHaveIsRefused ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const auto isMissing = [&]( const Hardware::FieldInfo& field ) {
         return std::none_of(
            layout.fields().begin(), layout.fields().end(),
            [&]( const auto& own ) { return own.identifier == field.identifier; } );
      };
      const auto fields = Hardware::classFields( layout.table() );
      const auto missing = std::find_if( fields.begin(), fields.end(), isMissing );
      if( missing == fields.end() ) {
         return;
      }
      const std::string name( missing->name );
      try {
         layout.settable( name );
         ADD_FAILURE() << layout.pairText() << ' ' << name;
      } catch( const Vorn::Error& error ) {
         EXPECT_TRUE( error.message().starts_with( "field " + name + " does not exist in " +
                                                   layout.pairText() +
                                                   ", only on chip types and variants " ) )
            << error.message();
      }
   } );
}
