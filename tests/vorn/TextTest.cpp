// Columns and wrapped paragraphs.
#include "Text.h"

#include <gtest/gtest.h>

TEST( Text, columns ) {
   constexpr Vorn::Align columns[] = { Vorn::Align::right, Vorn::Align::left, Vorn::Align::left };
   const std::vector<std::vector<std::string>> rows{ { "no", "name", "value" },
                                                     { "1", "action", "7" },
                                                     { "128", "x", "" } };
   EXPECT_EQ( Vorn::columnsOf( columns, rows ), " no  name    value\n"
                                                "  1  action  7\n"
                                                "128  x\n" );
}

TEST( Text, wrapped ) {
   const std::string word( 39, 'w' );
   EXPECT_EQ( Vorn::wrapped( word + ' ' + word + ' ' + word ), word + ' ' + word + '\n' + word );
   EXPECT_EQ( Vorn::wrapped( "one\n\ntwo" ), "one\n\ntwo" );
   EXPECT_EQ( Vorn::wrapped( "  " + word + ' ' + word + ' ' + word ),
              "  " + word + ' ' + word + ' ' + word );
   EXPECT_EQ( Vorn::wrapped( std::string( 100, 'w' ) ), std::string( 100, 'w' ) );
}
