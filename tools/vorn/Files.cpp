// Files that are written as a whole or not at all.
#include "Files.h"

#include "Error.h"
#include "Text.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace Vorn {

namespace {

namespace fs = std::filesystem;

// 0, or why the text could not be written.
int written( const fs::path& path, std::string_view text ) {
   errno = 0;
   std::ofstream file( path, std::ios::binary );
   file.write( text.data(), static_cast<std::streamsize>( text.size() ) );
   file.close();
   return file ? 0 : errno;
}

int replaced( const fs::path& path, std::string_view text ) {
   fs::path next = path;
   next += ".vorn" + std::to_string( ::getpid() );
   int failure = written( next, text );
   std::error_code code;
   if( failure == 0 ) {
      fs::rename( next, path, code );
      failure = code.value();
   }
   if( failure != 0 ) {
      fs::remove( next, code );
   }
   return failure;
}

} // namespace

void writeFile( const std::string& path, std::string_view text ) {
   std::error_code code;
   const auto status = fs::status( path, code );
   int failure = 0;
   if( status.type() == fs::file_type::not_found ) {
      failure = replaced( path, text );
   } else if( status.type() == fs::file_type::regular ) {
      // Not over a link, but over what it leads to.
      failure =
         ::access( path.c_str(), W_OK ) == 0 ? replaced( fs::canonical( path ), text ) : errno;
   } else {
      failure = written( path, text );
   }
   if( failure != 0 ) {
      throw Error( "cannot write " + inQuotes( path ) + ": " + std::strerror( failure ) );
   }
}

} // namespace Vorn
