// The manual page says of every verb which options it has, and no others; and it is well-formed.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>

namespace {

using Names = std::set<std::string>;

// The words that complete `word` after these.
Names offered( std::vector<std::string> words ) {
   words.insert( words.begin(), { "complete", "--" } );
   std::istringstream lines( Testing::vorn( words ).out );
   Names names;
   for( std::string line; std::getline( lines, line ); ) {
      names.insert( line.substr( 0, line.find( '\t' ) ) );
   }
   return names;
}

// The page's text by the verb that a subsection explains; what stands elsewhere is under "".
std::map<std::string, std::string> sections() {
   std::map<std::string, std::string> result;
   std::istringstream lines( Testing::contentsOf( VORN_MAN_PAGE ) );
   std::string verb;
   for( std::string line; std::getline( lines, line ); ) {
      if( line.starts_with( ".SS " ) ) {
         verb = line.substr( 4 );
      } else if( line.starts_with( ".SH " ) ) {
         verb.clear();
      }
      result[verb] += line + '\n';
   }
   return result;
}

// The options that are explained there. Each begins an item: .TP and, in the next line, .B or .BI
// and the name, such as \-\-chip.
Names optionsIn( const std::string& text ) {
   Names names;
   std::istringstream lines( text );
   for( std::string line, before; std::getline( lines, line ); before = line ) {
      std::istringstream words( line );
      std::string macro, name;
      words >> macro >> name;
      std::erase( name, '\\' );
      if( before == ".TP" && macro.starts_with( ".B" ) && name.starts_with( "--" ) ) {
         names.insert( name );
      }
   }
   return names;
}

} // namespace

TEST( ManPage, everyVerbWithItsOptions ) {
   const auto explained = sections();
   Names verbs = offered( { "" } );
   ASSERT_FALSE( verbs.empty() );
   verbs.insert( "" );
   EXPECT_EQ( explained.size(), verbs.size() );
   for( const auto& verb : verbs ) {
      ASSERT_TRUE( explained.contains( verb ) ) << verb;
      Names options = verb.empty() ? offered( { "--" } ) : offered( { verb, "--" } );
      if( !verb.empty() ) {
         options.erase( "--help" ); // explained once for all
      }
      EXPECT_EQ( optionsIn( explained.at( verb ) ), options ) << verb;
   }
}

TEST( ManPage, isWellFormed ) {
   if( Testing::run( "sh", { "-c", "command -v man" } ).status != 0 ) {
      GTEST_SKIP() << "there is no man";
   }
   const auto outcome =
      Testing::run( "env", { "LC_ALL=C.UTF-8", "MANWIDTH=80", "man", "--warnings", "-E", "UTF-8",
                             "-l", "-Tutf8", "-Z", VORN_MAN_PAGE } );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_NE( outcome.out, "" );
}
