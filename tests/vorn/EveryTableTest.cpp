// Every pair of every table through the real program, held against the registry's own views.
#include "RunVorn.h"

#include "Chips.h"
#include "Decode.h"
#include "Encode.h"
#include "Error.h"
#include "Plan.h"

#include <Hardware/Registry.h>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

namespace {

using Json = nlohmann::ordered_json;

void forEveryPair( const std::function<void( const Vorn::Plan& )>& action ) {
   for( const auto table : Hardware::classNames() ) {
      for( const auto& pair : Vorn::pairsOf( table ) ) {
         for( const U32 variant : pair.variants ) {
            action( Vorn::Plan( table, Vorn::chipOf( U64( pair.chip ) ), variant ) );
         }
      }
   }
}

Json pairOf( const Vorn::Plan& plan ) {
   return { { "table", plan.table() },
            { "chip", plan.chip().name },
            { "variant", plan.variant() } };
}

Vorn::PairText argumentsOf( const Vorn::Plan& plan ) {
   return { std::string( plan.table() ), plan.chip().name, std::to_string( plan.variant() ) };
}

// A value of this width whose bits differ from field to field.
std::string valueOf( const Vorn::Plan::Field& field ) {
   std::string digits;
   for( unsigned bit = 0; bit < field.width; bit += 4 ) {
      const unsigned rest = field.width - bit;
      const unsigned digit = ( bit + field.identifier * 5 + 3 ) % 16;
      digits += "0123456789abcdef"[rest < 4 ? digit % ( 1u << rest ) : digit];
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
void fieldIs( std::vector<U8>& image, const Vorn::Plan::Field& field, const std::string& value ) {
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
      text += { "0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15] };
   }
   return text;
}

// The fresh entry of the pair, cut to the width of the memory.
std::vector<U8> freshEntry( const Vorn::Plan& plan ) {
   const auto chip = static_cast<Hardware::ChipType>( plan.chip().number );
   const auto view = Hardware::stringObj( plan.table(), chip, plan.variant() );
   return { view->buf(), view->buf() + std::size_t( 4 ) * view->width() };
}

} // namespace

TEST( EveryTable, programComposesWhatABitLoopComposes ) {
   std::string input;
   std::vector<Json> expected;
   forEveryPair( [&]( const Vorn::Plan& plan ) {
      const auto info =
         Hardware::pairInfo( plan.table(), plan.chip().number, plan.variant() ).value();
      const U32 entry = info.entries - 1;
      const U32 array = info.arrayElements - 1;
      const U32 identifier = info.instanceCount - 1u;

      Json line = pairOf( plan );
      line["entry"] = entry;
      line["array"] = array;
      line["identifier"] = identifier;
      Json made = line;
      auto& fields = line["fields"] = Json::object();
      auto image = freshEntry( plan );
      for( const auto& field : plan.fields() ) {
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
         const auto chip = static_cast<Hardware::ChipType>( plan.chip().number );
         ASSERT_TRUE( Hardware::stringObj( plan.table(), chip, plan.variant() )
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
   forEveryPair( [&]( const Vorn::Plan& plan ) {
      for( const auto& field : plan.fields() ) {
         std::vector<U8> image( plan.imageBytes() );
         const auto value = valueOf( field );
         fieldIs( image, field, value );
         const auto text = Vorn::decode(
            { { std::string( plan.table() ), plan.chip().name, std::to_string( plan.variant() ) },
              { hexOf( image ) },
              true } );
         const Json decoded = Json::parse( text );
         ASSERT_EQ( decoded["fields"].size(), plan.fields().size() );
         EXPECT_EQ( decoded["fields"][std::string( field.name )], value )
            << plan.pairText() << ' ' << field.name;
         std::size_t position = 0;
         for( const auto& [name, ignored] : decoded["fields"].items() ) {
            EXPECT_EQ( name, plan.fields()[position++].name );
         }
      }
   } );
}

TEST( EveryTable, aTagFieldCannotBeSet ) {
   forEveryPair( []( const Vorn::Plan& plan ) {
      for( const auto& field : plan.fields() ) {
         const std::string name( field.name );
         try {
            Vorn::encode( { argumentsOf( plan ), "0", "0", "0", { name + "=0" } } );
            EXPECT_FALSE( field.readOnly ) << plan.pairText() << ' ' << name;
         } catch( const Vorn::Error& error ) {
            EXPECT_TRUE( field.readOnly );
            EXPECT_EQ( error.message(), "field " + name + " of " + plan.pairText() +
                                           " is read-only: it holds the entry's tag" );
         }
      }
   } );
}

TEST( EveryTable, aFieldThatOnlyOtherPairsHaveIsRefused ) {
   forEveryPair( []( const Vorn::Plan& plan ) {
      const auto isMissing = [&]( const Hardware::FieldInfo& field ) {
         return std::none_of( plan.fields().begin(), plan.fields().end(), [&]( const auto& own ) {
            return own.identifier == field.identifier;
         } );
      };
      const auto fields = Hardware::classFields( plan.table() );
      const auto missing = std::find_if( fields.begin(), fields.end(), isMissing );
      if( missing == fields.end() ) {
         return;
      }
      const std::string name( missing->name );
      try {
         plan.settable( name );
         ADD_FAILURE() << plan.pairText() << ' ' << name;
      } catch( const Vorn::Error& error ) {
         EXPECT_TRUE( error.message().starts_with( "field " + name + " does not exist in " +
                                                   plan.pairText() +
                                                   ", only on chip types and variants " ) )
            << error.message();
      }
   } );
}
