// `vorn reference`: the reference of all tables and registers, as files.
#include "Arguments.h"
#include "Files.h"
#include "Verbs.h"
#include "forms/ReferencePages.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>

#include <unistd.h>

namespace Vorn {

namespace {

// A folder, made with those above it. New ones are removed again unless they are kept.
class NewFolder {
public:
   explicit NewFolder( const std::filesystem::path& path ) {
      std::error_code code;
      for( auto part = path; !part.empty() && !exists( part, code ); part = part.parent_path() ) {
         made_.push_back( part );
      }
      create_directories( path, code );
      if( code ) {
         removeEmpty();
         throw Error( "cannot make the folder " + inQuotes( path.string() ) + ": " +
                      code.message() );
      }
   }
   ~NewFolder() { removeEmpty(); }
   NewFolder( const NewFolder& ) = delete;
   NewFolder& operator=( const NewFolder& ) = delete;

   void keep() { made_.clear(); }

private:
   void removeEmpty() {
      for( const auto& part : made_ ) {
         ::rmdir( part.c_str() );
      }
   }

   std::vector<std::filesystem::path> made_; // the innermost first
};

void writeReference( const std::string& path ) {
   NewFolder folder( path ); // first, as the pages take their time
   const auto pages = referencePages();
   std::vector<FileText> files;
   for( const Page& page : pages ) {
      files.push_back( { std::filesystem::path( path ) / page.file, page.text } );
   }
   writeFiles( files );
   folder.keep();
}

} // namespace

VerbRun addReference( CLI::App& verb ) {
   const auto folder = std::make_shared<std::string>();
   verb.add_option( "DIR", *folder, "Folder of the pages, made if there is none" )->required();
   describe( verb,
             "Writes a page of Markdown for each table or register into the folder: chip types and "
             "variants, dimensions, addresses, tags, fields, and a drawing of each format; and the "
             "indexes index.md by table and fields.md by field. Existing pages of these names are "
             "replaced, all of them or none; other files are left alone.",
             "  vorn reference datasheets" );
   return [folder]( Output& ) { writeReference( *folder ); };
}

} // namespace Vorn
