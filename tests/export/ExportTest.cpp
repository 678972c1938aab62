// What `vorn export` prints: the C header of all pairs compiles without a warning and agrees with
// the library's typed accessors on random images; the catalogue has a line for each field.
#include "Guarded.h"
#include "support/Bits.h"
#include "support/Classes.h"
#include "support/EveryClass.h"
#include "vorn/Folders.h"
#include "vorn/RunVorn.h"

#include <Hardware/ChipType.h>
#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <sstream>

#include <dlfcn.h>

namespace {

using Testing::Bits;
using Testing::ClassAccessors;
using Testing::expectPrinted;
using Testing::FieldAccessors;
using Testing::Guarded;
using Testing::Image;
using Testing::linesOf;
using Testing::run;
using Testing::TemporaryFolder;
using Testing::vorn;

struct Pair {
   const ClassAccessors& of;
   Hardware::ChipType chipType;
   U8 variant;
   std::string symbol; // LifTable_BCM88690_B0_3
   std::string csv;    // LifTable,BCM88690_B0,10,3,80,
   std::size_t bytes;
};

// All pairs of all classes; one variant stands for all where it is not looked at.
std::vector<Pair> everyPair() {
   std::vector<Pair> pairs;
   for( const ClassAccessors& of : Testing::everyClass() ) {
      for( unsigned chipType = 0; chipType < 32; ++chipType ) {
         std::vector<U8> variants;
         for( unsigned variant = 0; variant < 256; ++variant ) {
            const auto info = Hardware::pairInfo( of.name, chipType, static_cast<U8>( variant ) );
            if( info && ( info->hasVariants || variant == 0 ) ) {
               variants.push_back( static_cast<U8>( variant ) );
            }
         }
         for( const U8 variant : variants ) {
            const auto info = *Hardware::pairInfo( of.name, chipType, variant );
            const auto type = static_cast<Hardware::ChipType>( chipType );
            std::ostringstream chip;
            chip << type;
            const auto number = std::to_string( variant );
            pairs.push_back(
               { of, type, variant,
                 of.name + ( '_' + chip.str() ) + ( variants.size() > 1 ? '_' + number : "" ),
                 of.name + ( ',' + chip.str() ) + ',' + std::to_string( chipType ) + ',' +
                    ( info.hasVariants ? number : "any" ) + ',' + std::to_string( 4 * info.width ) +
                    ',',
                 4u * info.width } );
         }
      }
   }
   return pairs;
}

// How many fields the pairs have together, by the counts that the tests of the classes state.
std::size_t fieldCountOf( const std::vector<Pair>& pairs ) {
   std::size_t count = 0;
   for( const Pair& pair : pairs ) {
      count += Hardware::pairInfo( pair.of.name, pair.chipType, pair.variant )->fieldCount;
   }
   return count;
}

// Calls `act` with each field of the pair, and a view of the pair.
template<class Act>
void forEachField( const Pair& pair, const Act& act ) {
   const auto view = pair.of.viewOf( pair.chipType, pair.variant );
   for( const FieldAccessors& field : pair.of.fields ) {
      if( view->isFieldValid( field.identifier ) ) {
         act( *view, field );
      }
   }
}

// A field of the exported header, as the program below has it.
struct Exported {
   unsigned offset;
   unsigned width;
   unsigned long long mask; // of the last word
   void ( *get )( const U8* entry, unsigned long long* words );
   void ( *set )( U8* entry, const unsigned long long* words ); // null for a tag
   unsigned long long tag;
};

const std::string programBeginning = R"(#include "all.h"
#define GET( name ) static void name##_g( const uint8_t *entry, unsigned long long *words ) {
#define SET( name ) static void name##_s( uint8_t *entry, const unsigned long long *words ) {
#define TAG( name ) GET( name ) words[0] = name##_get( entry ); }
#define NARROW( name ) TAG( name ) SET( name ) name##_set( entry, TYPE( name ) words[0] ); }
#define TYPE( name ) (__typeof__( name##_get( 0 ) ))
#define WIDE( name ) GET( name ) COPY( uint64_t own[8]; name##_get( entry, own );, words, own, name ) } \
   SET( name ) COPY( uint64_t own[8];, own, words, name ) name##_set( entry, own ); }
#define COPY( first, to, from, name ) first for( unsigned i = 0; i < name##_WORDS; ++i ) { to[i] = from[i]; }
struct Field {
   unsigned offset, width;
   unsigned long long mask;
   void (*get)( const uint8_t *, unsigned long long * );
   void (*set)( uint8_t *, const unsigned long long * );
   unsigned long long tag;
};
)";

// A program in C that has all the header's functions in tables.
std::string programOf( const std::vector<Pair>& pairs ) {
   std::string functions = programBeginning;
   std::string fields = "extern const struct Field fields[];\nconst struct Field fields[] = {\n";
   std::string blanks = "extern void (*const blanks[])( uint8_t * );\n"
                        "void (*const blanks[])( uint8_t * ) = {\n";
   for( const Pair& pair : pairs ) {
      forEachField( pair, [&]( const Kelvar::AsicBase& view, const FieldAccessors& field ) {
         const auto name = pair.symbol + '_' + field.name;
         const bool isTag = field.set == nullptr;
         functions += ( view.fieldWidth( field.identifier ) > 64 ? "WIDE( "
                        : isTag                                  ? "TAG( "
                                                                 : "NARROW( " ) +
                      name + " )\n";
         fields += "{ " + name + "_OFFSET, " + name + "_WIDTH, " + name + "_MASK, " + name +
                   "_g, " + ( isTag ? "0" : name + "_s" ) + ", 0 },\n";
      } );
      blanks += pair.symbol + "_blank,\n";
   }
   return functions + fields + "};\n" + blanks + "};\n";
}

// The first one's program is run.
constexpr const char* compilers[] = { VORN_C_COMPILERS };

class Compiled : public testing::TestWithParam<const char*> {};

Bits bitsOf( const unsigned long long* words ) {
   return Testing::bitsAt(
      Image( reinterpret_cast<const U8*>( words ), reinterpret_cast<const U8*>( words ) + 64 ), 0,
      512 );
}

TEST_P( Compiled, WithoutWarningsAgreesWithTheLibrary ) {
   const std::string compiler = GetParam();
   const auto pairs = everyPair();
   ASSERT_EQ( pairs.size(), Testing::pairCount );
   const TemporaryFolder folder;
   std::ofstream( folder / "all.h" ) << vorn( { "export", "--format", "c-header", "--all" } ).out;
   std::ofstream( folder / "all.c" ) << programOf( pairs );
   const auto expectBuilt = [&]( const std::vector<std::string>& more ) {
      std::vector<std::string> arguments = { "-std=c11",   "-fPIC",         "-Wall",
                                             "-Wextra",    "-Wconversion",  "-Wsign-conversion",
                                             "-Wpedantic", "-Wshadow",      "-Wunused",
                                             "-Werror",    folder / "all.c" };
      arguments.insert( arguments.end(), more.begin(), more.end() );
      const auto built = run( compiler, arguments );
      EXPECT_EQ( built.err.substr( 0, 2000 ), "" );
      EXPECT_EQ( built.status, 0 );
   };
   if( compiler != compilers[0] ) {
      expectBuilt( { "-fsyntax-only" } );
      return;
   }
   expectBuilt( { "-shared", "-o", folder / "all.so" } );
   void* const program = ::dlopen( ( folder / "all.so" ).c_str(), RTLD_NOW );
   ASSERT_NE( program, nullptr ) << ::dlerror();
   const auto* exported = static_cast<const Exported*>( ::dlsym( program, "fields" ) );
   ASSERT_NE( exported, nullptr );
   using Blank = void ( * )( U8* );
   const auto* blank = static_cast<const Blank*>( ::dlsym( program, "blanks" ) );
   ASSERT_NE( blank, nullptr );

   std::mt19937 random( 1 );
   unsigned compared = 0;
   for( const Pair& pair : pairs ) {
      SCOPED_TRACE( pair.symbol );
      // The last byte of an entry is the last that may be touched.
      Guarded entry( pair.bytes );
      U8* const buf = entry.data();
      ( *blank++ )( buf );
      Image fresh( 200 );
      pair.of.make( pair.chipType, fresh.data(), 200, false, pair.variant );
      EXPECT_EQ( std::memcmp( buf, fresh.data(), pair.bytes ), 0 );
      forEachField( pair, [&]( Kelvar::AsicBase& view, const FieldAccessors& field ) {
         SCOPED_TRACE( field.name );
         EXPECT_EQ( exported->offset, view.fieldOffset( field.identifier ) );
         EXPECT_EQ( exported->width, view.fieldWidth( field.identifier ) );
         const unsigned width = exported->width;
         EXPECT_EQ( exported->mask, ~0ull >> ( 63 - ( width - 1 ) % 64 ) );
         for( int turn = 0; turn < 4; ++turn ) {
            Image image = Testing::randomImage( pair.bytes, random );
            std::memcpy( buf, image.data(), image.size() );
            pair.of.bufferIs( view, image.data(), static_cast<U16>( image.size() ) );
            unsigned long long words[8] = {};
            exported->get( buf, words );
            EXPECT_EQ( bitsOf( words ), field.get( view ) );
            ++compared;
            if( field.set == nullptr ) {
               continue;
            }
            // Bits beyond the width are dropped.
            for( auto& word : words ) {
               word = random() | static_cast<unsigned long long>( random() ) << 32;
            }
            exported->set( buf, words );
            field.set( view, bitsOf( words ) & Testing::lowOnes( width ) );
            EXPECT_EQ( std::memcmp( buf, image.data(), image.size() ), 0 );
         }
         ++exported;
      } );
   }
   EXPECT_EQ( compared, 4 * fieldCountOf( pairs ) );
   ::dlclose( program );

   // The same header serves C++.
   std::ofstream( folder / "all.cpp" ) << "#include \"all.h\"\n";
   EXPECT_EQ( run( compiler, { "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-Wconversion",
                               "-Werror", folder / "all.cpp" } )
                 .err.substr( 0, 2000 ),
              "" );
}

INSTANTIATE_TEST_SUITE_P( By, Compiled, testing::ValuesIn( compilers ),
                          []( const testing::TestParamInfo<const char*>& compiler ) {
                             const std::string path = compiler.param;
                             std::string name = path.substr( path.rfind( '/' ) + 1 );
                             std::replace( name.begin(), name.end(), '-', '_' );
                             return name;
                          } );

TEST( ExportHeader, ServesTheExampleOfItsDocument ) {
   const TemporaryFolder folder;
   const auto header = vorn(
      { "export", "--format", "c-header", "LifTable", "--chip", "BCM88690_B0", "--variant", "3" } );
   std::ofstream( folder / "lif.h" ) << header.out;
   const auto document = Testing::contentsOf( VORN_EXPORTS_DOCUMENT );
   const auto begin = document.find( "```c\n" ) + 5;
   ASSERT_GT( document.size(), begin );
   std::ofstream( folder / "example.c" )
      << "#include \"lif.h\"\nint main( void ) {\n"
      << document.substr( begin, document.find( "```", begin ) - begin )
      << "return LifTable_BCM88690_B0_3_holdsTag( entry ) &&\n"
         "( words[1] >> 11 & 0x1fffff ) == 77 ? 0 : 1;\n}\n";
   const auto built = run( compilers[0], { "-std=c11", "-Wall", "-Wextra", "-Werror",
                                           folder / "example.c", "-o", folder / "example" } );
   EXPECT_EQ( built.err, "" );
   EXPECT_EQ( run( folder / "example", {} ).status, 0 );
}

TEST( ExportHeader, OfATable ) {
   const auto printed =
      vorn( { "export", "--format", "c-header", "FheiIveSizeReg", "--chip", "BCM88650_B0" } ).out;
   const auto begin = printed.find( "/* FheiIveSizeReg" );
   ASSERT_NE( begin, std::string::npos );
   const auto text = printed.substr( begin );
   EXPECT_EQ( text.substr( 0, text.find( "static" ) ),
              "/* FheiIveSizeReg on BCM88650_B0 */\n"
              "#ifndef FheiIveSizeReg_BCM88650_B0_BYTES\n"
              "#define FheiIveSizeReg_BCM88650_B0_BYTES 16U\n"
              "\n" );
   // An entry is recognised by its tag.
   const auto lif = vorn( { "export", "--format", "c-header", "LifTable", "--chip", "10" } ).out;
   EXPECT_NE( lif.find( "#define LifTable_BCM88690_B0_0_resultType_TAG 0x3aU\n" ),
              std::string::npos );
   EXPECT_NE( lif.find( "static inline bool LifTable_BCM88690_B0_0_holdsTag(" ),
              std::string::npos );
   EXPECT_EQ( lif.find( "resultType_set" ), std::string::npos );
}

TEST( ExportCsv, HasALineForEachField ) {
   const auto lines = linesOf( vorn( { "export", "--format", "csv", "--all" } ).out );
   std::map<std::string, std::string> rest; // of each line, by its pair and field
   for( const std::string& line : lines ) {
      std::size_t at = 0;
      for( int comma = 0; comma < 6; ++comma ) {
         at = line.find( ',', at ) + 1;
      }
      EXPECT_TRUE( rest.emplace( line.substr( 0, at ), line.substr( at ) ).second ) << line;
   }
   std::size_t count = 0;
   for( const Pair& pair : everyPair() ) {
      forEachField( pair, [&]( const Kelvar::AsicBase& view, const FieldAccessors& field ) {
         ++count;
         const auto found = rest.find( pair.csv + field.name + ',' );
         ASSERT_NE( found, rest.end() ) << pair.csv << field.name;
         const auto& line = found->second;
         const auto numbers = ',' + std::to_string( field.identifier ) + ',' +
                              std::to_string( view.fieldOffset( field.identifier ) ) + ',' +
                              std::to_string( view.fieldWidth( field.identifier ) ) + ',' +
                              ( field.set == nullptr ? '1' : '0' ) + ',';
         EXPECT_NE( line.find( numbers ), std::string::npos ) << line;
      } );
   }
   EXPECT_EQ( count, fieldCountOf( everyPair() ) );
   EXPECT_EQ( lines.size(), count + 1 );
}

TEST( ExportCsv, OfATable ) {
   const std::string headings = "table,chip,chipType,variant,bytes,field,hardwareName,identifier,"
                                "offset,width,readOnly,tag\n";
   expectPrinted( { "export", "TcamActionTable", "--chip", "BCM88650_B0", "--format", "csv" },
                  headings + "TcamActionTable,BCM88650_B0,2,0,4,action,ACTION,3,0,20,0,\n" );
   expectPrinted( { "export", "--format", "csv", "EpniIsidTable", "--chip", "2" },
                  headings + "EpniIsidTable,BCM88650_B0,2,any,4,isid,ISID,216,0,24,0,\n" );
   const auto lif = vorn( { "export", "--format", "csv", "LifTable", "--chip", "10" } ).out;
   EXPECT_NE( lif.find( "\nLifTable,BCM88690_B0,10,0,80,resultType,RESULT_TYPE,296,174,6,1,58\n" ),
              std::string::npos );
}

TEST( Export, RefusesWhatItCannotPrint ) {
   const auto refused = []( const std::vector<std::string>& arguments, const std::string& message,
                            int status ) {
      const auto outcome = vorn( arguments );
      EXPECT_EQ( outcome.err, "vorn: " + message + '\n' );
      EXPECT_EQ( outcome.out, "" );
      EXPECT_EQ( outcome.status, status );
   };
   refused( { "export", "LifTable", "--chip", "10" },
            "--format is required; see vorn export --help", 2 );
   refused( { "export", "LifTable", "--chip", "10", "--format", "json" },
            "--format: unknown format \"json\"; allowed: c-header, json-schema, csv", 2 );
   refused( { "export", "--format", "csv" }, "TABLE or --all is required; see vorn export --help",
            2 );
   refused( { "export", "--format", "csv", "LifTable" },
            "--chip is required; see vorn export --help", 2 );
   refused( { "export", "--format", "csv", "--all", "LifTable" },
            "--all excludes TABLE; see vorn export --help", 2 );
   refused( { "export", "--format", "csv", "--all", "--variant", "0" },
            "--all excludes --variant; see vorn export --help", 2 );
   refused( { "export", "--format", "csv", "LifTabel", "--chip", "10" },
            "unknown table \"LifTabel\"; did you mean LifTable?", 1 );
   refused( { "export", "--format", "csv", "LifTable", "--chip", "10", "--variant", "5" },
            "LifTable has no variant 5 on BCM88690_B0; allowed: 0-4,6-11", 1 );
   refused( { "export", "--format", "csv", "--all", "--chip", "BCM88690" },
            "unknown chip \"BCM88690\"; did you mean BCM88690_B0?", 1 );
}

} // namespace
