// Colours: at a terminal alone, and not where they are not wanted.
#include "RunVorn.h"

#include "Terminal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Testing::onTerminal;
using Testing::vorn;

// A variable of the environment for the length of a test.
class Variable {
public:
   Variable( const char* name, const char* value ) : name_( name ) {
      if( const char* const before = std::getenv( name ) ) {
         before_ = before;
      }
      ::setenv( name, value, 1 );
   }
   ~Variable() {
      if( before_ ) {
         ::setenv( name_, before_->c_str(), 1 );
      } else {
         ::unsetenv( name_ );
      }
   }
   Variable( const Variable& ) = delete;
   Variable& operator=( const Variable& ) = delete;

private:
   const char* name_;
   std::optional<std::string> before_;
};

// The same terminal wherever the tests run.
class Terminal : public testing::Test {
private:
   Variable noColor_{ "NO_COLOR", "" };
   Variable term_{ "TERM", "xterm" };
};

constexpr auto escape = '\x1b';

std::string withoutReturns( std::string text ) {
   std::erase( text, '\r' );
   return text;
}

const std::vector<std::string> wrong{ "encode", "LifTabel", "--chip", "2" };
const std::vector<std::vector<std::string>> withHeading{
   { "address", "LifTable", "--chip", "2" },
   { "locate", "--chip", "2", "--bounded", "0x1070000" },
   { "identify", "--chip", "2", "00000000" },
   { "decode", "TcamActionTable", "--chip", "2", "00000000" },
};

} // namespace

TEST_F( Terminal, theBeginningOfAnErrorIsRed ) {
   EXPECT_EQ( onTerminal( wrong, {}, 80 ).err,
              "\x1b[1;31mvorn: \x1b[0munknown table \"LifTabel\"; did you mean LifTable?\r\n" );
   EXPECT_EQ(
      onTerminal( { "program", "-" }, { "{}\n" }, 80 ).err,
      "\x1b[1;31m<stdin>:1:1: \x1b[0mmissing key \"table\"; every line needs table, chip and "
      "fields\r\n" );
   EXPECT_EQ(
      onTerminal( { "tables", "LifTable" }, {}, 80 ).err,
      "\x1b[1;31mvorn: \x1b[0munexpected argument \"LifTable\"; see vorn tables --help\r\n" );
}

TEST_F( Terminal, headingsAreFaint ) {
   for( const auto& arguments : withHeading ) {
      const auto shown = withoutReturns( onTerminal( arguments, {}, 80, true ).err );
      const auto plain = vorn( arguments ).out;
      const auto lineEnd = plain.find( '\n' );
      EXPECT_EQ( shown,
                 "\x1b[2m" + plain.substr( 0, lineEnd ) + "\x1b[0m" + plain.substr( lineEnd ) );
   }
}

TEST_F( Terminal, noColoursInAPipe ) {
   EXPECT_EQ( vorn( wrong ).err.find( escape ), std::string::npos );
   for( const auto& arguments : withHeading ) {
      // Standard error being a terminal says nothing about standard output.
      EXPECT_EQ( onTerminal( arguments, {}, 80 ).out, vorn( arguments ).out );
      EXPECT_EQ( vorn( arguments ).out.find( escape ), std::string::npos );
   }
}

TEST_F( Terminal, noColoursWhereTheyAreNotWanted ) {
   for( const auto& [name, value] :
        { std::pair( "NO_COLOR", "1" ), std::pair( "TERM", "dumb" ) } ) {
      const Variable variable( name, value );
      EXPECT_EQ( onTerminal( wrong, {}, 80 ).err.find( escape ), std::string::npos ) << name;
      for( const auto& arguments : withHeading ) {
         EXPECT_EQ( withoutReturns( onTerminal( arguments, {}, 80, true ).err ),
                    vorn( arguments ).out )
            << name;
      }
   }
}

TEST_F( Terminal, nothingIsPaintedAsNothing ) {
   const int terminal = ::posix_openpt( O_RDWR | O_NOCTTY );
   ASSERT_GE( terminal, 0 );
   EXPECT_TRUE( Vorn::hasColours( terminal ) );
   EXPECT_EQ( Vorn::painted( Vorn::Paint::heading, "", terminal ), "" );
   EXPECT_EQ( Vorn::painted( Vorn::Paint::heading, "a\n", terminal ), "\x1b[2ma\x1b[0m\n" );
   ::close( terminal );
   EXPECT_FALSE( Vorn::hasColours( terminal ) );
   EXPECT_EQ( Vorn::painted( Vorn::Paint::heading, "a\n", terminal ), "a\n" );
}
