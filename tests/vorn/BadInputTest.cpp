// What the verbs that find entries refuse, and wrong usage of all of them: each kind of it with its
// message, of one line.
#include "RunVorn.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Refused {
   const char* what;
   std::vector<std::string> arguments;
   std::string message;
   std::string input = {};
};

std::string noNumber( const std::string& text, const std::string& name ) {
   return "bad number \"" + text + "\" for " + name +
          "; write decimal digits, hexadecimal digits after 0x or binary digits after 0b";
}

std::string negative( const std::string& text, const std::string& name ) {
   return "negative value " + text + " for " + name + "; a value is 0 or more";
}

std::string noChip( const std::string& given ) {
   return "unknown chip " + given + "; allowed: " + Testing::allChipsListed;
}

// A row for `vorn address TABLE --chip CHIP`.
Refused address( const char* what, const std::string& table, const std::string& chip,
                 std::vector<std::string> more, const std::string& message ) {
   more.insert( more.begin(), { "address", table, "--chip", chip } );
   return { what, more, "vorn: " + message };
}

// A row for an entry of TcamActionTable on BCM88650_B0, which has 1024 in each of 24 elements.
Refused entry( const char* what, const std::string& text, const std::string& message ) {
   return address( what, "TcamActionTable", "2", { "--entry", text }, message );
}

Refused locate( const char* what, const std::string& chip, std::vector<std::string> more,
                const std::string& message ) {
   more.insert( more.begin(), { "locate", "--chip", chip } );
   return { what, more, "vorn: " + message };
}

Refused identify( const char* what, const std::string& chip, std::vector<std::string> more,
                  const std::string& message ) {
   more.insert( more.begin(), { "identify", "--chip", chip } );
   return { what, more, "vorn: " + message };
}

// A row for a line of standard input.
Refused line( const char* what, const std::string& text, const std::string& message ) {
   return { what, { "identify", "--chip", "10", "-" }, "<stdin>:" + message, text };
}

const std::string bytesWanted = "; write two hexadecimal digits for each byte, entry byte 0 first";

const std::vector<Refused> badInput{
   address( "a table misspelt", "LifTabel", "2", {},
            "unknown table \"LifTabel\"; did you mean LifTable?" ),
   address( "a table with an escape of 8 bits in it", "LifTable\xc2\x9b", "2", {},
            "unknown table \"LifTable\\xc2\\x9b\"; did you mean LifTable?" ),
   address( "a table that is gone", "EvecTable", "10", {},
            "EvecTable does not exist on BCM88690_B0; allowed: " +
               Testing::chipsListedOf( "EvecTable" ) ),
   address( "a variant in a hole", "LifTable", "16", { "--variant", "5" },
            "LifTable has no variant 5 on BCM88480_B0; allowed: 0-4,6-11" ),
   address( "a variant beyond a byte", "EvecTable", "3", { "--variant", "256" },
            "EvecTable has no variant 256 on BCM88660_A0; allowed: 0-255" ),
   entry( "the entry after the last", "1024",
          "entry 1024 is out of range in TcamActionTable on BCM88650_B0; allowed: 0 to 1023" ),
   entry( "a range that begins in the table", "1000-1024",
          "entry 1024 is out of range in TcamActionTable on BCM88650_B0; allowed: 0 to 1023" ),
   entry( "a range beyond the table", "2000-3000",
          "entry 3000 is out of range in TcamActionTable on BCM88650_B0; allowed: 0 to 1023" ),
   entry( "a range backwards", "7-3",
          "range 7-3 for entry ends before it begins; did you mean 3-7?" ),
   entry( "a range backwards in two bases", "0x10-15",
          "range 0x10-15 for entry ends before it begins; did you mean 15-0x10?" ),
   entry( "a range without end", "5-", "bad range \"5-\" for entry; write it as first-last" ),
   entry( "a range without beginning", "-5", negative( "-5", "entry" ) ),
   entry( "a range of three", "1-2-3", noNumber( "2-3", "entry" ) ),
   entry( "a range to a negative entry", "1--3", negative( "-3", "entry" ) ),
   entry( "a range to no number", "1-last", noNumber( "last", "entry" ) ),
   entry( "a range with dots", "1..3", noNumber( "1..3", "entry" ) ),
   address( "the entry that counts entries", "LifTable", "10", { "--entry", "4294967295" },
            "entry 4294967295 is out of range in LifTable on BCM88690_B0 variant 0; allowed: 0 to "
            "4294967294" ),
   address( "a second entry of a register", "FheiIveSizeReg", "2", { "--entry", "0-1" },
            "entry 1 is out of range in FheiIveSizeReg on BCM88650_B0; allowed: 0" ),
   address( "an array element after the last", "LifTable", "6", { "--array", "2" },
            "array 2 is out of range in LifTable on BCM88470_A0 variant 0; allowed: 0 to 1" ),
   address( "an array element that variant 0 has", "OutAcBank", "5",
            { "--variant", "1", "--array", "1" },
            "array 1 is out of range in OutAcBank on BCM88375_B0 variant 1; allowed: 0" ),
   address( "a range of array elements", "LifTable", "6", { "--array", "0-1" },
            noNumber( "0-1", "array" ) ),
   address( "a third instance", "TcamActionTable", "14", { "--identifier", "2" },
            "identifier 2 is out of range in TcamActionTable on BCM88850_A0; allowed: 0 to 1" ),
   address( "a second instance where a sibling has it", "TcamActionTable", "13",
            { "--identifier", "1" },
            "identifier 1 is out of range in TcamActionTable on BCM88800_A0; allowed: 0" ),
   address( "a pair without address", "LifTable", "Software", {},
            "LifTable on Software has no address" ),
   address( "an entry of a pair without address", "LifTable", "21", { "--entry", "1" },
            "entry 1 is out of range in LifTable on Software; allowed: 0" ),

   locate( "an address between two memories", "2", { "--dest-block", "3", "0x12ffff" },
           "nothing lies at 0x12ffff in block 3 on BCM88650_B0; above it 0x130000 is entry 0 of "
           "EpniIsidTable in block 3" ),
   locate( "an address beyond all memories", "10", { "0xffffffff" },
           "nothing lies at 0xffffffff on BCM88690_B0; below it 0xfffffffe is entry 4294967294 of "
           "LifTable variant 0 in block 1" ),
   locate( "a block without memories", "10", { "0", "--dest-block", "3" },
           "no memory of BCM88690_B0 lies in block 3; allowed: 1,2,5,6,9,10" ),
   locate( "a block beyond a byte", "10", { "0", "--dest-block", "256" },
           "dest-block 256 is out of range; it is at most 255" ),
   locate( "a block in words", "10", { "0", "--dest-block", "IPPE" },
           noNumber( "IPPE", "dest-block" ) ),
   locate( "an address in words", "10", { "here" }, noNumber( "here", "address" ) ),
   locate( "a range of words", "10", { "x-y" }, noNumber( "x", "address" ) ),
   locate( "an address beyond 32 bits", "10", { "0x100000000" },
           "address 0x100000000 is out of range; it is at most 4294967295" ),
   locate( "a chip type misspelt", "BCM88470_AO", { "0" },
           "unknown chip \"BCM88470_AO\"; did you mean BCM88470_A0?" ),
   locate( "a chip type without addresses", "Software", { "0" },
           "no memory of Software has an address" ),

   identify( "a length of none", "2", { "0500000000" },
             "the image has 5 bytes; an entry on BCM88650_B0 has 4,8,12,16,24,80" ),
   identify( "an empty image", "21", { "" }, "the image has 0 bytes; an entry on Software has 24" ),
   identify( "a tag of none", "13", { std::string( 48, '0' ) },
             "the image has 24 bytes, but the tag of no such entry on BCM88800_A0" ),
   identify( "a chip type misspelt", "BCM88800_AO", { "00000000" },
             "unknown chip \"BCM88800_AO\"; did you mean BCM88800_A0?" ),
   identify( "a bad digit", "2", { "05O00000" }, "bad digit \"O\" in \"05O00000\"" + bytesWanted ),
   identify( "a file that isn't there", "2", { "--file", "/nowhere/images" },
             "cannot open /nowhere/images: No such file or directory" ),
   identify( "a folder", "2", { "--file", "/tmp" }, "cannot read /tmp: Is a directory" ),
   line( "a line with a bad digit", "  0500000x\n",
         "1:10: bad digit \"x\" in \"0500000x\"" + bytesWanted ),
   line( "a length of none in a line", "\n\n 00\n",
         "3:2: the image has 1 bytes; an entry on BCM88690_B0 has 4,8,12,24,36,44,80" ),
   line( "an image of another chip type", R"({"chip":"BCM88650_B0","image":"00000000"})",
         "1:31: the image is one of BCM88650_B0, not of BCM88690_B0" ),
   line( "an image of no chip type", R"({"chip":9,"image":"00000000"})", "1:19: " + noChip( "9" ) ),
   line( "an object without image", R"({"table":"LifTable"})", "1:1: missing key \"image\"" ),

   { "what a traced verb refuses",
     { "trace", "locate", "--chip", "Sofware", "0" },
     "vorn: unknown chip \"Sofware\"; did you mean Software?" },
   { "a table of a traced verb",
     { "trace", "address", "LifTabel", "--chip", "2" },
     "vorn: unknown table \"LifTabel\"; did you mean LifTable?" },
};

const std::string verbs = "tables, field, layout, encode, decode, diff, stats, program, identify, "
                          "address, locate, export, reference, explore";

const std::vector<Refused> wrongUsage{
   { "no verb", {}, "a verb is required; allowed: " + verbs + ", trace" },
   { "a verb misspelt", { "lokate" }, "unknown verb \"lokate\"; did you mean locate?" },
   { "a verb in capitals", { "TABLES" }, "unknown verb \"TABLES\"; did you mean tables?" },
   { "no such verb", { "frob" }, "unknown verb \"frob\"; allowed: " + verbs + ", trace" },
   { "an option before the verb",
     { "--json", "tables" },
     "unknown option \"--json\"; allowed: --help, --version" },
   { "a letter for an option", { "-v" }, "unknown option \"-v\"; allowed: --help, --version" },
   { "an option misspelt before the verb",
     { "--versoin" },
     "unknown option \"--versoin\"; did you mean --version?" },
   { "nothing to trace", { "trace" }, "a verb is required; allowed: " + verbs },
   { "a verb to trace, misspelt",
     { "trace", "encod" },
     "unknown verb \"encod\"; did you mean encode?" },
   { "the trace of a trace",
     { "trace", "trace", "tables" },
     "unknown verb \"trace\"; allowed: " + verbs },
   { "an option of trace",
     { "trace", "--level", "8", "tables" },
     "unknown option \"--level\"; allowed: --help" },
   { "an option of a traced verb",
     { "trace", "locate", "--chip", "2", "--block", "5", "0" },
     "unknown option \"--block\"; allowed: --help, --chip, --dest-block, --bounded, --json" },
   { "an argument that a traced verb lacks",
     { "trace", "locate", "--chip", "2" },
     "ADDRESS is required; see vorn trace locate --help" },
   { "an argument of tables",
     { "tables", "LifTable" },
     "unexpected argument \"LifTable\"; see vorn tables --help" },
   { "an argument with a semicolon",
     { "tables", "a;b" },
     "unexpected argument \"a;b\"; see vorn tables --help" },
   { "no address", { "locate", "--chip", "2" }, "ADDRESS is required; see vorn locate --help" },
   { "no chip type to locate on", { "locate", "0" }, "--chip is required; see vorn locate --help" },
   { "a block without number",
     { "locate", "--chip", "2", "0", "--dest-block" },
     "--dest-block needs N; see vorn locate --help" },
   { "two blocks",
     { "locate", "--chip", "2", "0", "--dest-block", "1", "--dest-block", "2" },
     "--dest-block is given twice; see vorn locate --help" },
   { "two chip types",
     { "locate", "--chip", "2", "--chip", "3", "0" },
     "--chip is given twice; see vorn locate --help" },
   { "a chip type without name",
     { "locate", "0", "--chip" },
     "--chip needs NAME|NUMBER; see vorn locate --help" },
   { "a value for a flag",
     { "locate", "--chip", "2", "0", "--json=no" },
     "--json takes no value; see vorn locate --help" },
   { "no table", { "address" }, "TABLE is required; see vorn address --help" },
   { "no chip type of a table",
     { "address", "LifTable" },
     "--chip is required; see vorn address --help" },
   { "a second table",
     { "address", "LifTable", "OutAcBank", "--chip", "2" },
     "unexpected argument \"OutAcBank\"; see vorn address --help" },
   { "an option of another verb",
     { "address", "LifTable", "--chip", "2", "--dest-block", "3" },
     "unknown option \"--dest-block\"; allowed: --help, --chip, --variant, --entry, --array, "
     "--identifier, --json" },
   { "an option misspelt",
     { "address", "LifTable", "--chip", "2", "--enrty", "3" },
     "unknown option \"--enrty\"; did you mean --entry?" },
   { "two ranges",
     { "address", "LifTable", "--chip", "2", "--entry", "1-2", "--entry", "4-5" },
     "--entry is given twice; see vorn address --help" },
   { "an entry without number",
     { "address", "LifTable", "--chip", "2", "--entry" },
     "--entry needs N|N-M; see vorn address --help" },
   { "two variants",
     { "address", "LifTable", "--chip", "2", "--variant", "1", "--variant=2" },
     "--variant is given twice; see vorn address --help" },
   { "no image",
     { "identify", "--chip", "2" },
     "IMAGE or --file is required; see vorn identify --help" },
   { "no chip type of an image",
     { "identify", "00000000" },
     "--chip is required; see vorn identify --help" },
   { "an image and a file",
     { "identify", "--chip", "2", "00000000", "--file", "images" },
     "--file excludes IMAGE; see vorn identify --help" },
   { "a file without name",
     { "identify", "--chip", "2", "--file" },
     "--file needs FILE; see vorn identify --help" },
   { "two files",
     { "identify", "--chip", "2", "--file", "-", "--file", "-" },
     "FILE: standard input is given twice" },
   { "a form of images misspelt",
     { "identify", "--chip", "2", "--image-format", "word", "00000000" },
     "--image-format: unknown format \"word\"; did you mean words?" },
   { "a flag misspelt",
     { "identify", "--chip", "2", "--ruledout", "00000000" },
     "unknown option \"--ruledout\"; did you mean --ruled-out?" },
   { "no file of entries", { "program" }, "FILE is required; see vorn program --help" },
   { "standard input as two files of entries",
     { "program", "-", "-" },
     "FILE: standard input is given twice" },
   { "no folder", { "reference" }, "DIR is required; see vorn reference --help" },
   { "help with a value",
     { "locate", "--help=me" },
     "--help takes no value; see vorn locate --help" },
   { "the version of a verb",
     { "tables", "--version" },
     "unknown option \"--version\"; allowed: --help, --chip, --json" },
};

void expectAll( const std::vector<Refused>& rows, const std::string& before, int status ) {
   for( const Refused& row : rows ) {
      SCOPED_TRACE( row.what );
      const auto outcome = Testing::vorn( row.arguments, row.input );
      EXPECT_EQ( outcome.err, before + row.message + '\n' );
      EXPECT_EQ( outcome.out, "" );
      EXPECT_EQ( outcome.status, status );
   }
}

} // namespace

TEST( BadInput, isReportedInOneLine ) { expectAll( badInput, "", 1 ); }

TEST( BadInput, wrongUsageIsReportedInOneLine ) { expectAll( wrongUsage, "vorn: ", 2 ); }

TEST( BadInput, aLineWithoutEnd ) {
   Testing::expectRefused( { "identify", "--chip", "10", "-" },
                           "<stdin>:2: the line is longer than 1048576 bytes",
                           "\n" + std::string( 2000000, '0' ) );
}

TEST( BadInput, theLinesAfterOneThatIsTooLong ) {
   const auto outcome = Testing::vorn(
      { "decode", "TcamActionTable", "--chip", "2", "--single-line", "--keep-going", "-" },
      "05000000\n" + std::string( 3000000, '0' ) + "\n06000000\n" );
   EXPECT_EQ( outcome.out, "action=0x5\naction=0x6\n" );
   EXPECT_EQ( outcome.err, "<stdin>:2: the line is longer than 1048576 bytes\n"
                           "vorn: 1 error, 2 images printed\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( BadInput, aFullDevice ) {
   for( const std::vector<std::string>& arguments :
        { std::vector<std::string>{ "address", "LifTable", "--chip", "2", "--entry", "0-16383" },
          std::vector<std::string>{ "locate", "--chip", "10", "--bounded", "0x1101005" },
          std::vector<std::string>{ "identify", "--chip", "2", "00000000" },
          std::vector<std::string>{ "tables" }, std::vector<std::string>{ "complete", "--", "" },
          std::vector<std::string>{ "locate", "--help" },
          std::vector<std::string>{ "--version" } } ) {
      const auto outcome = Testing::vorn( arguments, {}, "/dev/full" );
      EXPECT_EQ( outcome.err, "vorn: cannot write standard output: No space left on device\n" );
      EXPECT_EQ( outcome.status, 1 );
   }
}
