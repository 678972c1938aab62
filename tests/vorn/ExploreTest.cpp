// `vorn explore`: the link it prints, what it opens, and what it refuses.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>

namespace {

// A page, and a desktop that records what it is asked to open.
class Explore : public testing::Test {
protected:
   Explore() {
      std::ofstream( folder / "a page.html" ) << "the page\n";
      set( "VORN_EXPLORER", folder / "a page.html" );
      set( "XDG_RUNTIME_DIR", folder.path() );
      set( "DISPLAY", "" );
      set( "WAYLAND_DISPLAY", "" );
   }

   // Puts a program xdg-open first, which writes the file that it is given to a pipe.
   void addDesktop() {
      const std::string program = folder / "xdg-open";
      std::ofstream( program ) << "#!/bin/sh\n"
                                  "case $1 in file:*) echo \"$1\" ;; *) cat \"$1\" ;; esac >'"
                               << ( folder / "opened" ) << "'\n";
      std::filesystem::permissions( program, std::filesystem::perms::owner_all );
      ASSERT_EQ( ::mkfifo( ( folder / "opened" ).c_str(), 0600 ), 0 );
      set( "PATH", folder.path().string() + ":/usr/bin:/bin" );
      set( "DISPLAY", ":0" );
   }

   std::string url( const std::string& fragment = "" ) const {
      return "file://" + folder.path().string() + "/a%20page.html" + fragment;
   }

   ~Explore() override { ::setenv( "PATH", pathBefore_.c_str(), 1 ); }

   Testing::TemporaryFolder folder;

   void set( const std::string& name, const std::string& value ) {
      ::setenv( name.c_str(), value.c_str(), 1 );
   }

   std::string pathBefore_ = std::getenv( "PATH" );
};

constexpr auto action = "#table=TcamActionTable&chip=10&variant=0";

} // namespace

TEST_F( Explore, printsTheLink ) {
   Testing::expectPrinted( { "explore" }, url() + '\n' );
   Testing::expectPrinted( { "explore", "TcamActionTable", "--chip", "BCM88690_B0" },
                           url( action ) + '\n' );
   Testing::expectPrinted(
      { "explore", "TcamActionTable", "--chip", "10", "0x00012345 0x00000000", "--entry", "5",
        "--array", "2" },
      url( action + std::string( "&image=4523010000000000&entry=5&array=2" ) ) + '\n' );
}

TEST_F( Explore, takesTheVariantFromTheTag ) {
   const auto image = Testing::vorn( { "encode", "LifTable", "--chip", "10", "--variant", "3",
                                       "--output", "bytes" } )
                         .out;
   const std::string digits = image.substr( 0, image.size() - 1 );
   Testing::expectPrinted( { "explore", "LifTable", "--chip", "10", digits },
                           url( "#table=LifTable&chip=10&variant=3&image=" + digits ) + '\n' );
}

TEST_F( Explore, opensTheLinkWhereThereIsADisplay ) {
   addDesktop();
   Testing::expectPrinted( { "explore" }, url() + '\n' );
   EXPECT_EQ( Testing::contentsOf( folder / "opened" ), url() + '\n' );
   Testing::expectPrinted( { "explore", "TcamActionTable", "--chip", "10" }, url( action ) + '\n' );
   EXPECT_EQ( Testing::contentsOf( folder / "opened" ),
              "<!doctype html><meta http-equiv=\"refresh\" content=\"0; url=" +
                 url( "#table=TcamActionTable&amp;chip=10&amp;variant=0" ) + "\"><a href=\"" +
                 url( "#table=TcamActionTable&amp;chip=10&amp;variant=0" ) +
                 "\">Vorn explorer</a>\n" );
}

TEST_F( Explore, opensNothingWhereItIsToldNotTo ) {
   ::setenv( "DISPLAY", ":0", 1 );
   set( "PATH", folder.path() );
   Testing::expectPrinted( { "explore", "--no-open" }, url() + '\n' );
   const auto outcome = Testing::vorn( { "explore" } );
   EXPECT_EQ( outcome.out, url() + '\n' );
   EXPECT_EQ( outcome.err, "vorn: warning: cannot start xdg-open: No such file or directory; open "
                           "the link in a browser\n" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST_F( Explore, refusesWhatThereIsNot ) {
   Testing::expectRefused( { "explore", "LifTabel", "--chip", "10" },
                           "vorn: unknown table \"LifTabel\"; did you mean LifTable?" );
   Testing::expectRefused( { "explore", "TcamActionTable", "--chip", "10", "45230g" },
                           "vorn: bad digit \"g\" in \"45230g\"; write two hexadecimal digits for "
                           "each byte, entry byte 0 first" );
   Testing::expectRefused( { "explore", "EgressPerPortTable", "--chip", "10", "--entry", "256" },
                           "vorn: entry 256 is out of range in EgressPerPortTable on BCM88690_B0; "
                           "allowed: 0 to 255" );
   ::setenv( "VORN_EXPLORER", "/nowhere/page.html", 1 );
   Testing::expectRefused( { "explore" },
                           "vorn: no page \"/nowhere/page.html\"; install the package "
                           "vorn-explorer, or build it with scripts/make/explorer.sh" );
}

TEST_F( Explore, needsATableForAPair ) {
   EXPECT_EQ( Testing::vorn( { "explore", "--chip", "10" } ).status, 2 );
   const auto outcome = Testing::vorn( { "explore", "LifTable" } );
   EXPECT_EQ( outcome.err, "vorn: --chip is required; see vorn explore --help\n" );
   EXPECT_EQ( outcome.status, 2 );
}
