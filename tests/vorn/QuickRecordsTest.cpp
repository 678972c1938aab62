// The quick path of `vorn program` beside the careful one, and threads whose results stay in order.
#include "QuickRecordsCheck.h"
#include "RunVorn.h"

#include <Vorn/Chip.h>

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <vector>

namespace {

using Random = std::minstd_rand;

std::size_t below( Random& random, std::size_t end ) {
   return std::uniform_int_distribution<std::size_t>( 0, end - 1 )( random );
}

template<class Items>
const auto& oneOf( Random& random, const Items& items ) {
   return items[below( random, std::size( items ) )];
}

// A member of an object: one that is right, or now and then any other.
std::string memberOf( Random& random, const char* name, const std::string& value ) {
   static constexpr const char* names[] = { "vsi",  "table", "vlanEditVid1", "nothing",  "entry",
                                            "from", "image", "resultType",   "\\u0076si" };
   static constexpr const char* values[] = { "1",
                                             "\"0x7\"",
                                             "-0",
                                             "-1",
                                             "1.0",
                                             "1e1",
                                             "01",
                                             "null",
                                             "{}",
                                             "[1]",
                                             "\"\"",
                                             "true",
                                             "99999999999999999999",
                                             "\"1:2\"",
                                             "\"mask\"",
                                             "\"LifTable\"",
                                             "65536" };
   const bool isOther = below( random, 25 ) == 0;
   return std::string( "\"" ) + ( isOther ? oneOf( random, names ) : name ) +
          ( below( random, 9 ) == 0 ? "\" : " : "\":" ) +
          ( below( random, 25 ) == 0 ? oneOf( random, values ) : value );
}

std::string recordFor( Random& random ) {
   static constexpr const char* tables[] = { "\"LifTable\"", "\"LifTable\"",
                                             "\"TcamActionTable\"" };
   static constexpr const char* chips[] = { "\"BCM88690_B0\"", "10", "\"10\"", "2" };
   static constexpr const char* fields[] = { "vsi",      "vlanEditVid1", "qosProfile",  "action",
                                             "mdbEntry", "globInLif",    "statObjectId" };
   std::vector<std::string> members{ memberOf( random, "table", oneOf( random, tables ) ),
                                     memberOf( random, "chip", oneOf( random, chips ) ) };
   for( const char* const key : { "variant", "entry", "array", "identifier" } ) {
      if( below( random, 3 ) == 0 ) {
         members.push_back( memberOf( random, key, std::to_string( below( random, 3 ) ) ) );
      }
   }
   std::string inner;
   for( std::size_t i = below( random, 4 ); i > 0; --i ) {
      inner += inner.empty() ? "" : ",";
      inner += memberOf( random, oneOf( random, fields ), std::to_string( below( random, 300 ) ) );
   }
   members.insert( members.begin() + static_cast<std::ptrdiff_t>( below( random, members.size() ) ),
                   memberOf( random, "fields", '{' + inner + '}' ) );
   std::string line = "{";
   for( const std::string& member : members ) {
      line += ( line.size() > 1 ? "," : "" ) + member;
   }
   line += '}';
   if( below( random, 10 ) == 0 ) {
      static constexpr char others[] = "{}[],:\"\\ \t\r0-#\x01\x7f\xc3\xef";
      line[below( random, line.size() )] = oneOf( random, others );
   }
   return line;
}

} // namespace

TEST( QuickRecords, sayWhatTheCarefulParserSays ) {
   Vorn::QuickRecords quick;
   Vorn::RecordComposer careful;
   Random random( 1 );
   std::size_t quickOnes = 0;
   for( int i = 0; i < 8000; ++i ) {
      const auto line = recordFor( random );
      if( const auto entry = Testing::quickly( quick, line ) ) {
         ++quickOnes;
         ASSERT_EQ( entry, Testing::carefully( careful, line ) ) << line;
      }
   }
#ifdef VORN_WITH_SIMDJSON
   EXPECT_GT( quickOnes, 1000u );
#else
   EXPECT_EQ( quickOnes, 0u );
#endif
}

// A record of any pair, in a line like those that recordOf() writes, goes the quick way.
TEST( QuickRecords, takePlainRecordsOfEveryPair ) {
#ifdef VORN_WITH_SIMDJSON
   Vorn::QuickRecords quick;
   Vorn::RecordComposer careful;
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      for( const Vorn::Layout& layout : Vorn::layoutsOn( chip ) ) {
         Vorn::Composer composer( layout );
         for( const Vorn::Field& field : layout.fields() ) {
            if( !field.readOnly && layout.overlapping( field.name ).empty() ) {
               composer.set( field, field.width % 3 );
            }
         }
         const auto line = Vorn::recordOf( layout, { 0, 0, 0 }, composer.image() );
         const auto made = Testing::quickly( quick, line );
         EXPECT_TRUE( made ) << line;
         EXPECT_EQ( made, Testing::carefully( careful, line ) );
      }
   }
#endif
}

TEST( QuickRecords, leaveWhatOneParserAloneWouldTake ) {
   Vorn::QuickRecords quick;
   const std::string plain = R"({"table":"LifTable","chip":10,"fields":{"vsi":1}})";
#ifdef VORN_WITH_SIMDJSON
   EXPECT_TRUE( Testing::quickly( quick, plain ) );
#endif
   for( const std::string& line :
        { std::string( R"({"table":"LifTable","chip":10,"fields":{"vsi":-0}})" ),
          std::string( R"({"table":"LifTable","chip":10,"fields":{"vsi":1,"vsi":1}})" ),
          std::string( R"({"table":"LifTable","chip":10,"chip":10,"fields":{"vsi":1}})" ),
          plain + " " + plain, plain + std::string( 1, '\0' ), plain + "x", std::string(),
          std::string( "[]" ), "[" + plain + "]" } ) {
      EXPECT_FALSE( Testing::quickly( quick, line ) ) << line;
   }
}

// Much input is worked on by several threads: the lines stay in order, and what comes before a bad
// one is printed and nothing after it.
TEST( QuickRecords, stayInOrder ) {
   std::string input;
   std::string images;
   constexpr unsigned lines = 20000;
   for( unsigned i = 0; i < lines; ++i ) {
      // Some aren't plain.
      input += R"({"table":"TcamActionTable","chip":2,)" +
               std::string( i % 5 == 0 ? R"("from":"00000000",)" : "" ) + R"("fields":{"action":)" +
               std::to_string( i ) + ( i % 7 == 0 ? "}}\n\n" : "}}\n" );
      const U8 bytes[] = { static_cast<U8>( i ), static_cast<U8>( i >> 8 ), 0, 0 };
      Vorn::appendHex( images, bytes );
      images += '\n';
   }
   Testing::expectPrinted( { "program", "--allow-repeats", "--output=bytes", "-" }, images, input );
   const auto outcome =
      Testing::vorn( { "program", "--allow-repeats", "--output=bytes", "-" },
                     input + R"({"table":"TcamActionTable","chip":2,"feilds":1})" + '\n' + input );
   EXPECT_EQ( outcome.out, images );
   EXPECT_EQ( outcome.err, "<stdin>:22859:37: unknown key \"feilds\"; did you mean fields?\n" );
   EXPECT_EQ( outcome.status, 1 );
}
