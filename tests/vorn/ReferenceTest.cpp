// vorn reference, run for real: the pages of docs/reference/ are what it writes, and say what is
// known on paper.
#include "Folders.h"
#include "RunVorn.h"
#include "forms/ReferencePages.h"

#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdexcept>

namespace {

using Testing::contentsOf;

std::map<std::string, std::string> filesOf( const std::filesystem::path& folder ) {
   std::map<std::string, std::string> files;
   for( const auto& file : std::filesystem::directory_iterator( folder ) ) {
      files[file.path().filename()] = contentsOf( file.path() );
   }
   return files;
}

// Made once, as they take their time.
const auto& pages() {
   static const auto made = Vorn::referencePages();
   return made;
}

const std::string& pageOf( const std::string& table ) {
   const auto page = std::find_if( pages().begin(), pages().end(),
                                   [&]( const auto& one ) { return one.file == table + ".md"; } );
   return page == pages().end() ? throw std::out_of_range( table ) : page->text;
}

void expectLine( const std::string& table, const std::string& line ) {
   EXPECT_NE( pageOf( table ).find( '\n' + line + '\n' ), std::string::npos ) << line << "\n\n"
                                                                              << pageOf( table );
}

} // namespace

// scripts/make/reference.sh rewrites them.
TEST( Reference, thePagesOfTheRepositoryAreCurrent ) {
   const Testing::TemporaryFolder folder;
   const std::string made = folder / "new/reference";
   const auto outcome = Testing::vorn( { "reference", made } );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.out, "" );
   ASSERT_EQ( outcome.status, 0 );
   const auto now = filesOf( made );
   const auto before = filesOf( VORN_REFERENCE );
   EXPECT_EQ( now.size(), Hardware::classNames().size() + 2 ); // and two indexes
   for( const auto& [file, text] : now ) {
      ASSERT_TRUE( before.count( file ) ) << file;
      EXPECT_TRUE( before.at( file ) == text ) << file << " is not current";
   }
   EXPECT_EQ( before.size(), now.size() );
}

TEST( Reference, otherFilesAreLeftAlone ) {
   const Testing::TemporaryFolder folder;
   std::ofstream( folder / "notes.md" ) << "mine";
   std::ofstream( folder / "LifTable.md" ) << "old";
   ASSERT_EQ( Testing::vorn( { "reference", folder.path() } ).status, 0 );
   EXPECT_EQ( contentsOf( folder / "notes.md" ), "mine" );
   EXPECT_EQ( contentsOf( folder / "LifTable.md" ), pageOf( "LifTable" ) );
}

TEST( Reference, aTable ) {
   const std::string table = "TcamActionTable";
   expectLine( table, "| 2,3,6,7: 0 | 1 | 1024 | 24 | 1 |" );
   expectLine( table, "| 4,5,8: 0 | 1 | 2048 | 24 | 1 |" );
   expectLine( table, "| 10,12,14: 0 | 2 | 2048 | 24 | 2 |" );
   expectLine( table, "| 13: 0 | 2 | 2048 | 24 | 1 |" );
   expectLine( table, "| 15,16: 0 | 2 | 1024 | 24 | 1 |" );

   expectLine( table, "| 2,3: 0 | 0x1810000 | 1 | 1024 | 0 / 53 |" );
   expectLine( table, "| 4,5: 0 | 0x1a100000 | 1 | 2048 | 0 / 63 |" );
   expectLine( table, "| 8: 0 | 0x1a100000 | 1 | 2048 | 0 / 70 |" );
   expectLine( table, "| 10,12: 0 | 0x1100000 | 1 | 2048 | 0: 4 / 6, 1: 6 / 6 |" );
   expectLine( table, "| 14: 0 | 0x1100000 | 1 | 2048 | 0: 16 / 36, 1: 18 / 36 |" );

   expectLine( table, "| `action` | 3 | `ACTION` | `U32` | "
                      "0-19 on 2,3: 0<br>0-23 on 4-8: 0<br>0-31 on 10,12-16: 0 |" );
   expectLine( table, "| [1](#format-1) | 2,3: 0 | 1 | 12 |" );
   expectLine( table, "| [2](#format-2) | 4-8: 0 | 1 | 8 |" );
   expectLine( table, "| [3](#format-3) | 10,12-16: 0 | 1 | 32 |" );
   expectLine( table, "### Format 2\n\nChip types and variants 4-8: 0\n\n"
                      "Differs least from [format 1](#format-1), [format 3](#format-3), each in "
                      "1 field.\n\n```text" );
   expectLine( table, "bit  width  field\n  0     24  action\n 24      8  unused\n```" );
   EXPECT_EQ( pageOf( table ).find( "## Tags" ), std::string::npos );
}

TEST( Reference, aTableWithTagsAndWithoutAnAddress ) {
   const std::string table = "LifTable";
   expectLine( table, "| 21: 0 | none | - | - | - |" );
   expectLine( table, "| 2,3: 0-4,6 | 0x1070000 | 1 | 16384 | 0 / 52 |" );
   expectLine( table, "| 10,12: 0-4,6-11 | 0x0 | 1 | - | 10 / 1 |" );
   expectLine( table, "| 10,12-16: 3 | `resultType` 0x25 |" );
   expectLine( table,
               "| `resultType` | 296 | `RESULT_TYPE` | `U8`, read-only | 174-179 on 10,12-16: "
               "0-4,6-11; 21: 0 |" );
   expectLine( table, "| `mdbEntry` | 243 | `MDB_ENTRY` | `Raw256` | 0-179 on 10,12-16: 0-4,6-11; "
                      "21: 0 |" );
   expectLine( table, "### Format 31\n\nChip types and variants 21: 0\n" );
   EXPECT_EQ( pageOf( table ).find( "resultType` 0x0" ), std::string::npos );
   EXPECT_EQ( pageOf( table ).find( "### Format 32" ), std::string::npos );
}

TEST( Reference, aRegister ) {
   expectLine( "FheiIveSizeReg", "| `pphFheiIveSize` | 284 | `PPH_FHEI_IVE_SIZE` | `Raw128` | "
                                 "0-127 on 2-8: 0 |" );
   const auto index = pages().front();
   EXPECT_EQ( index.file, "index.md" );
   EXPECT_NE(
      index.text.find( "\n| [FheiIveSizeReg](FheiIveSizeReg.md) | register | 1 | 2-8: 0 |\n" ),
      std::string::npos );
   EXPECT_NE( index.text.find( "\n| [LifTable](LifTable.md) | table | 83 | 2,3: 0-4,6; 4-8: 0-6; "
                               "10,12-16: 0-4,6-11; 21: 0 |\n" ),
              std::string::npos );
   EXPECT_NE( index.text.find( "\n| 12 | `BCM88690_V6_B0` |\n" ), std::string::npos );
}

TEST( Reference, fieldsByName ) {
   const auto page = pages()[1];
   EXPECT_EQ( page.file, "fields.md" );
   EXPECT_NE( page.text.find( "| `vlanDomain` | 351 | `VLAN_DOMAIN` | "
                              "[EgressPerPortTable](EgressPerPortTable.md#fields), " ),
              std::string::npos );
   EXPECT_EQ( std::count( page.text.begin(), page.text.end(), '\n' ),
              4 + 2 + Hardware::fieldCatalogue().size() )
      << page.text;
   EXPECT_LT( page.text.find( "| `actionProfileIdx` |" ),
              page.text.find( "| `bypassFiltering` |" ) );
}

TEST( Reference, noPageIsTooWideOrTooLong ) {
   for( const auto& page : pages() ) {
      EXPECT_LT( page.text.size(), 200000u ) << page.file;
      EXPECT_TRUE( page.text.starts_with( "# " ) );
      EXPECT_TRUE( page.text.ends_with( '\n' ) );
      EXPECT_EQ( page.text.find( " \n" ), std::string::npos ) << page.file;
      EXPECT_EQ( page.text.find( "\n\n\n" ), std::string::npos ) << page.file;
   }
}
