// What `vorn layout`, `vorn tables` and `vorn reference` refuse, run for real: each kind of bad
// input and of wrong usage with its message.
#include "Folders.h"
#include "RunVorn.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

struct Refused {
   const char* what;
   std::vector<std::string> arguments; // FOLDER stands for a folder of the test's own
   std::string message;
};

std::string with( std::string text, const std::string& folder ) {
   if( const auto place = text.find( "FOLDER" ); place != std::string::npos ) {
      text.replace( place, 6, folder );
   }
   return text;
}

const std::vector<Refused> badInput{
   { "a table misspelt",
     { "layout", "LifTabel", "--chip", "2" },
     "unknown table \"LifTabel\"; did you mean LifTable?" },
   { "a variant in a hole",
     { "layout", "LifTable", "--chip", "2", "--variant", "5" },
     "LifTable has no variant 5 on BCM88650_B0; allowed: 0-4,6" },
   { "lines misspelt",
     { "layout", "LifTable", "--chip", "2", "--lines", "unicod" },
     "unknown lines \"unicod\"; did you mean unicode?" },
   { "lines of a kind there isn't",
     { "layout", "LifTable", "--chip", "2", "--lines", "double" },
     "unknown lines \"double\"; allowed: ascii, unicode" },
   { "a picture in a folder there isn't",
     { "layout", "LifTable", "--chip", "2", "--svg", "FOLDER/none/a.svg" },
     "cannot write \"FOLDER/none/a.svg\": No such file or directory" },
   { "a picture under the name of a folder",
     { "layout", "LifTable", "--chip", "2", "--svg", "FOLDER" },
     "cannot write \"FOLDER\": Is a directory" },
   { "a picture below a file",
     { "layout", "LifTable", "--chip", "2", "--svg", "FOLDER/file/a.svg" },
     "cannot write \"FOLDER/file/a.svg\": Not a directory" },
   { "a picture without a name",
     { "layout", "LifTable", "--chip", "2", "--svg", "" },
     "cannot write \"\": No such file or directory" },
   { "a picture for a full device",
     { "layout", "LifTable", "--chip", "2", "--svg", "/dev/full" },
     "cannot write \"/dev/full\": No space left on device" },
   { "an image that is too short",
     { "layout", "LifTable", "--chip", "10", "--svg", "FOLDER/a.svg", "--image", "0102" },
     "--image: the image has 2 bytes; the fields of LifTable on BCM88690_B0 variant 0 need 23, a "
     "whole entry has 80" },
   { "an image with the tag of another variant",
     { "layout", "LifTable", "--chip", "10", "--variant", "3", "--svg", "FOLDER/a.svg", "--image",
       std::string( 160, '0' ) },
     "--image: the image is not one of LifTable on BCM88690_B0 variant 3: its tag resultType is "
     "0x0, not 0x25" },
   { "images of two variants",
     { "layout", "EvecTable", "--chip", "6", "--svg", "FOLDER/a.svg", "--image", "0102030405060708",
       "EvecTable 7 0: 0102030405060708" },
     "--image: the image is one of BCM88470_B0, not of BCM88470_A0" },
   { "a picture of a difference to a chip type there isn't",
     { "layout", "LifTable", "--svg", "FOLDER/a.svg", "--diff", "2", "9" },
     "unknown chip 9; allowed: " + Testing::allChipsListed },
   { "a difference from a chip type there isn't",
     { "layout", "LifTable", "--diff", "BCM88650_BO", "4" },
     "unknown chip \"BCM88650_BO\"; did you mean BCM88650_B0?" },
   { "a difference to a chip type there isn't",
     { "layout", "TcamActionTable", "--diff", "4", "9" },
     "unknown chip 9; allowed: " + Testing::allChipsListed },
   { "a difference to a chip type that the table lacks",
     { "layout", "TcamActionTable", "--diff", "2", "Software" },
     "TcamActionTable does not exist on Software; allowed: " +
        Testing::chipsListedOf( "TcamActionTable" ) },
   { "a difference to a variant there isn't",
     { "layout", "LifTable", "--diff", "4:5", "10:5" },
     "LifTable has no variant 5 on BCM88690_B0; allowed: 0-4,6-11" },
   { "a variant missing after its colon",
     { "layout", "LifTable", "--diff", "4:", "10" },
     "bad number \"\" for variant; write decimal digits, hexadecimal digits after "
     "0x or binary digits after 0b" },
   { "two colons",
     { "layout", "LifTable", "--diff", "4:1:2", "10" },
     "bad number \"1:2\" for variant; write decimal digits, hexadecimal digits after "
     "0x or binary digits after 0b" },
   { "a table that isn't there and a picture",
     { "layout", "Lif\nTable", "--chip", "2", "--svg", "FOLDER/a.svg" },
     "unknown table \"Lif\\x0aTable\"; did you mean LifTable?" },
   { "a reference under the name of a file",
     { "reference", "FOLDER/file" },
     "cannot make the folder \"FOLDER/file\": Not a directory" },
   { "a reference below a file",
     { "reference", "FOLDER/file/reference" },
     "cannot make the folder \"FOLDER/file/reference\": Not a directory" },
   { "a reference without a name",
     { "reference", "" },
     "cannot make the folder \"\": Invalid argument" },
   { "a reference where a page is a folder",
     { "reference", "FOLDER/reference" },
     "cannot write \"FOLDER/reference/index.md\": Is a directory" },
};

const std::vector<Refused> wrongUsage{
   { "no table", { "layout" }, "TABLE is required; see vorn layout --help" },
   { "no chip type",
     { "layout", "LifTable" },
     "--chip or --diff is required; see vorn layout --help" },
   { "a variant alone",
     { "layout", "LifTable", "--variant", "1" },
     "--chip or --diff is required; see vorn layout --help" },
   { "a chip type and a difference",
     { "layout", "LifTable", "--chip", "2", "--diff", "2", "4" },
     "--diff excludes --chip; see vorn layout --help" },
   { "a variant and a difference",
     { "layout", "LifTable", "--variant", "2", "--diff", "2", "4" },
     "--diff excludes --variant; see vorn layout --help" },
   { "an image and a difference",
     { "layout", "LifTable", "--svg", "FOLDER/a.svg", "--diff", "2", "4", "--image", "00" },
     "--diff excludes --image; see vorn layout --help" },
   { "an image without a picture",
     { "layout", "LifTable", "--chip", "2", "--image", "00" },
     "--image requires --svg; see vorn layout --help" },
   { "three images",
     { "layout", "LifTable", "--chip", "2", "--svg", "FOLDER/a.svg", "--image", "00", "01", "02" },
     "--image: at most two images can be drawn; an image of several pieces stands in quotes" },
   { "an option where the picture's name is due",
     { "layout", "LifTable", "--chip", "2", "--svg", "--json" },
     "--svg needs FILE, which \"--json\" isn't; if it is meant as the value, write --svg=--json" },
   { "lines of a difference",
     { "layout", "LifTable", "--lines", "ascii", "--diff", "2", "4" },
     "--diff excludes --lines; see vorn layout --help" },
   { "a difference to nothing",
     { "layout", "LifTable", "--diff", "2" },
     "TO of --diff is required; see vorn layout --help" },
   { "a picture and JSON",
     { "layout", "LifTable", "--chip", "2", "--json", "--svg", "FOLDER/a.svg" },
     "--json excludes --svg; see vorn layout --help" },
   { "lines and JSON",
     { "layout", "LifTable", "--chip", "2", "--json", "--lines", "ascii" },
     "--json excludes --lines; see vorn layout --help" },
   { "lines of a picture",
     { "layout", "LifTable", "--chip", "2", "--svg", "FOLDER/a.svg", "--lines", "ascii" },
     "--svg excludes --lines; see vorn layout --help" },
   { "an option misspelt",
     { "layout", "LifTable", "--chip", "2", "--swg", "a.svg" },
     "unknown option \"--swg\"; did you mean --svg?" },
   { "an argument too many",
     { "layout", "LifTable", "--chip", "2", "more" },
     "unexpected argument \"more\"; see vorn layout --help" },
   { "a third side of a difference",
     { "layout", "LifTable", "--diff", "2", "3", "4" },
     "unexpected argument \"4\"; see vorn layout --help" },
   { "a reference to two places",
     { "reference", "FOLDER", "FOLDER" },
     "unexpected argument \"FOLDER\"; see vorn reference --help" },
};

// Runs each with a folder that holds a file, and a folder under the name of a page.
void forEach( const std::vector<Refused>& rows,
              const std::function<void( const Testing::Outcome&, const std::string& )>& check ) {
   const Testing::TemporaryFolder folder;
   std::ofstream( folder / "file" ) << "old";
   std::filesystem::create_directories( folder / "reference/index.md" );
   const std::string place = folder.path();
   for( const Refused& row : rows ) {
      SCOPED_TRACE( row.what );
      std::vector<std::string> arguments;
      for( const auto& argument : row.arguments ) {
         arguments.push_back( with( argument, place ) );
      }
      const auto outcome = Testing::vorn( arguments );
      EXPECT_EQ( outcome.out, "" );
      check( outcome, "vorn: " + with( row.message, place ) );
   }
   // No file remains.
   const std::filesystem::recursive_directory_iterator files( folder.path() );
   EXPECT_EQ( std::distance( begin( files ), end( files ) ), 3 );
   EXPECT_EQ( Testing::contentsOf( folder / "file" ), "old" );
}

} // namespace

TEST( LayoutRefused, badInput ) {
   forEach( badInput, []( const Testing::Outcome& outcome, const std::string& message ) {
      EXPECT_EQ( outcome.err, message + '\n' );
      EXPECT_EQ( outcome.status, 1 );
   } );
}

TEST( LayoutRefused, wrongUsage ) {
   forEach( wrongUsage, []( const Testing::Outcome& outcome, const std::string& message ) {
      EXPECT_EQ( outcome.err.substr( 0, outcome.err.find( '\n' ) ), message );
      EXPECT_EQ( outcome.status, 2 );
   } );
}
