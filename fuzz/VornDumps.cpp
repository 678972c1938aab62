// Dumps of plain entries with anything between them, as `vorn decode` reads them. Reading many
// entries at once has to print what reading them one by one prints, on standard error, too. The
// reader's runs have to be the entries that it reads one by one, wherever its input is cut.
#include "DumpTranscript.h"
#include "DumpWalkCheck.h"
#include "Finding.h"
#include "Pieces.h"
#include "Vorn.h"

#include <Arguments.h>
#include <Vorn/Chip.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Fuzz {
namespace {

using Testing::Image;
using Vorn::DecodeForm;
using Vorn::DumpReader;
using Vorn::ImageFormat;

// Takes what is written to standard error while it lives.
class StandardError {
public:
   StandardError()
      : own_( ::dup( STDERR_FILENO ) ), file_( ::memfd_create( "error", MFD_CLOEXEC ) ) {
      ::dup2( file_, STDERR_FILENO );
   }
   ~StandardError() { end(); }
   StandardError( const StandardError& ) = delete;
   StandardError& operator=( const StandardError& ) = delete;

   std::string end() {
      std::string text;
      if( own_ >= 0 ) {
         ::dup2( own_, STDERR_FILENO );
         text.resize( static_cast<std::size_t>( ::lseek( file_, 0, SEEK_CUR ) ) );
         if( ::pread( file_, text.data(), text.size(), 0 ) < 0 ) {
            text.clear();
         }
         ::close( file_ );
         ::close( std::exchange( own_, -1 ) );
      }
      return text;
   }

private:
   int own_;
   int file_;
};

std::string printed( const Vorn::DumpArguments& arguments, DecodeForm form, bool takesBlocks,
                     const std::string& text ) {
   std::string result;
   StandardError error;
   outcomeOf(
      [&]( Vorn::Output& ) { result = Testing::walked( arguments, form, takesBlocks ).text; },
      text );
   return result + error.end();
}

void requireSameEntries( const Vorn::DumpOptions& options, const std::string& text,
                         std::size_t piece, std::size_t most ) {
   DumpReader careful( options );
   Vorn::TextBytes bytes( text, "dump" );
   careful.begin( bytes );
   const auto expected = Testing::carefully( careful );
   for( const auto runs : { DumpReader::Runs::ofOneLayout, DumpReader::Runs::ofAny } ) {
      DumpReader quick( options );
      Pieces pieces( text, piece, "dump" );
      quick.begin( pieces );
      std::size_t taken = 0;
      const auto choose = [&]( std::size_t count ) { return std::min( count, most ); };
      if( Testing::quickly( quick, runs, choose, taken ) != expected ) {
         found( "other entries are read ahead" );
      }
   }
}

struct Table {
   const char* name;
   U8 chip;
   std::vector<U64> variants;
};

const Table& someTable( FuzzedDataProvider& input ) {
   static const std::vector<Table> tables{ { "LifTable", 10, { 0, 1, 2, 3, 4 } },
                                           { "TcamActionTable", 10, { 0 } },
                                           { "IvecTable", 10, { 0, 1, 2 } },
                                           { "FwdActProfileTable", 10, { 0 } },
                                           { "IsemMgmtReq", 12, { 0, 3, 5, 7 } } };
   return tables[input.ConsumeIntegralInRange( std::size_t( 0 ), tables.size() - 1 )];
}

// Entries of the table's variants, as bytes or as lines, with other bytes between them.
std::string textOf( const Table& table, bool isBinary, std::size_t gap,
                    FuzzedDataProvider& input ) {
   std::string text;
   while( input.remaining_bytes() > 0 && text.size() < 20000 ) {
      const auto kind = input.ConsumeIntegralInRange( 0, 15 );
      if( kind == 0 ) {
         text += input.ConsumeRandomLengthString( 40 );
         text += isBinary ? "" : "\n";
         continue;
      }
      const auto variant = table.variants[input.ConsumeIntegralInRange(
         std::size_t( 0 ), kind < 6 ? table.variants.size() - 1 : 0 )];
      const Vorn::Layout layout( table.name, table.chip, variant );
      Image image = input.ConsumeBytes<U8>( kind == 1 ? 0 : layout.bytes() );
      image.resize( layout.bytes() );
      for( const auto& [field, value] : layout.tag() ) {
         if( kind > 2 ) {
            layout.set( image, field, value );
         }
      }
      const auto times = kind == 15 ? input.ConsumeIntegralInRange( 1, 50 ) : 1;
      for( int i = 0; i < times; ++i ) {
         if( isBinary ) {
            text.append( image.begin(), image.end() );
            text.append( gap, '\7' );
         } else {
            text += digitsOf( image ) + ( kind == 14 ? "\r\n" : "\n" );
         }
      }
   }
   return text;
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   using namespace Fuzz;
   FuzzedDataProvider input( data, size );
   const Table& table = someTable( input );
   const Vorn::Layout layout( table.name, table.chip, table.variants.front() );
   Vorn::DumpArguments arguments;
   arguments.paths = { "-" };
   arguments.pair = { table.name, std::to_string( table.chip ),
                      input.ConsumeBool() ? std::to_string( table.variants.back() ) : "" };
   const auto form = input.PickValueInArray(
      { DecodeForm::csv, DecodeForm::json, DecodeForm::singleLine, DecodeForm::text } );
   arguments.format = input.PickValueInArray(
      { ImageFormat::automatic, ImageFormat::binary, ImageFormat::automatic, ImageFormat::binary,
        ImageFormat::stream, ImageFormat::bytes, ImageFormat::words, ImageFormat::hexdump } );
   arguments.printsEmpty = input.ConsumeBool();
   arguments.isStrict = input.ConsumeBool();
   arguments.keepsGoing = input.ConsumeBool();
   arguments.where = input.PickValueInArray(
      { "", "", "vsi < 2000", "action & 3", "mdbEntry > 77 || vsi in { 1, 2 }", "resultType" } );
   arguments.fields = input.ConsumeBool() ? "" : "*";
   const auto gap = input.ConsumeIntegralInRange<std::size_t>( 0, 9 );
   if( !input.ConsumeBool() ) {
      arguments.split.stride = std::to_string( layout.bytes() + gap );
   }
   if( input.ConsumeBool() ) {
      arguments.split.firstEntry =
         std::to_string( layout.info().entries - input.ConsumeIntegralInRange( 1u, 20u ) );
   }
   const auto piece = input.ConsumeIntegralInRange<std::size_t>( 1, 2000 );
   const auto most = input.ConsumeIntegralInRange<std::size_t>( 1, 60 );
   // The choices are in the last bytes, after the text.
   const std::string text = input.ConsumeBool()
                               ? input.ConsumeRemainingBytesAsString()
                               : textOf( table, arguments.format == ImageFormat::binary,
                                         arguments.split.stride ? gap : 0, input );
   const auto careful = printed( arguments, form, false, text );
   const auto quick = printed( arguments, form, true, text );
   if( quick != careful ) {
      found( "many at once print " + quick + "\none by one " + careful );
   }
   Vorn::DumpOptions options;
   options.table = table.name;
   options.chip = &Vorn::chipOf( table.chip );
   options.format = arguments.format;
   options.isStrict = arguments.isStrict;
   Vorn::setSplit( options, arguments.split );
   if( !( *arguments.pair ).variant.empty() ) {
      options.variant = table.variants.back();
   }
   requireSameEntries( options, text, piece, most );
   return 0;
}
