// `vorn explore`: the page that shows every layout in a browser, opened at a pair and an image.
#include "Arguments.h"
#include "Io.h"
#include "Terminal.h"
#include "Verbs.h"

#include <Vorn/Chip.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace Vorn {

namespace {

struct ExploreArguments {
   PairText pair{ "", "", "" };
   std::vector<std::string> image; // in pieces
   IndexText index;
   ImageFormat format = ImageFormat::automatic;
   bool opens = true;
};

std::string environment( const char* name ) {
   const char* const value = std::getenv( name );
   return value ? value : "";
}

// Beside an installed program, or in the folder of its build.
std::filesystem::path pagePath() {
   constexpr auto page = "vorn-explorer.html";
   if( const auto given = environment( "VORN_EXPLORER" ); !given.empty() ) {
      return std::filesystem::absolute( given );
   }
   std::error_code none;
   const auto folder = std::filesystem::read_symlink( "/proc/self/exe", none ).parent_path();
   for( const auto* const place : { "../share/vorn", "../../../explorer" } ) {
      const auto path = ( folder / place / page ).lexically_normal();
      if( std::filesystem::exists( path, none ) ) {
         return path;
      }
   }
   return ( folder / "../share/vorn" / page ).lexically_normal();
}

std::string urlOf( const std::filesystem::path& path ) {
   constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                      "0123456789/-._~+";
   std::string url = "file://";
   for( const char c : path.string() ) {
      if( plain.find( c ) != std::string_view::npos ) {
         url += c;
      } else {
         const U8 byte[] = { static_cast<U8>( c ) };
         url += '%';
         appendHex( url, byte );
      }
   }
   return url;
}

// The one image that is given; the variant is that of its tag where none is given.
std::string imageDigits( const ExploreArguments& arguments, std::optional<Layout>& layout ) {
   DumpOptions options;
   options.table = layout->table();
   options.chip = &layout->chip();
   if( !arguments.pair.variant.empty() ) {
      options.variant = layout->variant();
   }
   options.format = arguments.format;
   DumpReader reader( options );
   reader.begin( arguments.image );
   std::string digits;
   while( reader.next() ) {
      if( !digits.empty() ) {
         throw Error( "more than one image; the page opens dumps itself" );
      }
      const DumpEntry& entry = reader.entry();
      if( !entry.doubt.empty() ) {
         printWarning( reader.place(), entry.doubt );
      }
      layout = *entry.layout;
      appendHex( digits, entry.image.first( std::min( entry.image.size(), layout->bytes() ) ) );
   }
   return digits;
}

// What the page is to show, in the form of its links; empty for its default.
std::string fragmentOf( const ExploreArguments& arguments ) {
   if( arguments.pair.table.empty() ) {
      return {};
   }
   const auto& [table, chip, variant] = arguments.pair;
   std::optional<Layout> layout( layoutOf( { table, chip, variant.empty() ? "0" : variant } ) );
   const EntryIndex index = indexOf( arguments.index );
   const std::string digits =
      arguments.image.empty() ? std::string() : imageDigits( arguments, layout );
   layout->address( index );
   std::string fragment = "#table=" + std::string( layout->table() ) +
                          "&chip=" + std::to_string( layout->chip().number ) +
                          "&variant=" + std::to_string( layout->variant() );
   if( !digits.empty() ) {
      fragment += "&image=" + digits;
   }
   const std::pair<const char*, U64> numbers[] = { { "&entry=", index.entry },
                                                   { "&array=", index.array },
                                                   { "&identifier=", index.identifier } };
   for( const auto& [key, number] : numbers ) {
      if( number > 0 ) {
         fragment += key + std::to_string( number );
      }
   }
   return fragment;
}

// A page that leads to the URL: xdg-open takes files, and drops what follows a # in their URLs.
std::string leadingPage( const std::string& url ) {
   const std::string runtime = environment( "XDG_RUNTIME_DIR" );
   std::string path =
      ( runtime.empty() ? std::filesystem::temp_directory_path().string() : runtime ) +
      "/vorn-explore-XXXXXX.html";
   const int file = ::mkostemps( path.data(), 5, O_CLOEXEC );
   if( file < 0 ) {
      throw Error( "cannot write " + inQuotes( path ) + ": " + std::strerror( errno ) );
   }
   std::string escaped;
   for( const char c : url ) {
      escaped += c == '&' ? "&amp;" : std::string( 1, c );
   }
   const int failure =
      writeAll( file, "<!doctype html><meta http-equiv=\"refresh\" content=\"0; url=" + escaped +
                         "\"><a href=\"" + escaped + "\">Vorn explorer</a>\n" );
   ::close( file );
   if( failure != 0 ) {
      ::unlink( path.c_str() );
      throw Error( "cannot write " + inQuotes( path ) + ": " + std::strerror( failure ) );
   }
   return path;
}

// Starts the browser of the desktop, and doesn't wait for it.
void open( const std::string& url, bool hasFragment ) {
   std::string target = hasFragment ? leadingPage( url ) : url;
   std::string program = "xdg-open";
   char* const words[] = { program.data(), target.data(), nullptr };
   posix_spawn_file_actions_t actions;
   posix_spawnattr_t attributes;
   ::posix_spawn_file_actions_init( &actions );
   ::posix_spawnattr_init( &attributes );
   for( const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO } ) {
      ::posix_spawn_file_actions_addopen( &actions, stream, "/dev/null", O_RDWR, 0 );
   }
   ::posix_spawnattr_setflags( &attributes, POSIX_SPAWN_SETSID );
   const int failure =
      ::posix_spawnp( nullptr, program.c_str(), &actions, &attributes, words, environ );
   ::posix_spawn_file_actions_destroy( &actions );
   ::posix_spawnattr_destroy( &attributes );
   if( failure != 0 ) {
      printWarning( "", "cannot start xdg-open: " + std::string( std::strerror( failure ) ) +
                           "; open the link in a browser" );
   }
}

void explore( const ExploreArguments& arguments, Output& output ) {
   const std::string fragment = fragmentOf( arguments );
   const auto path = pagePath();
   if( !std::filesystem::exists( path ) ) {
      throw Error( "no page " + inQuotes( path.string() ) +
                   "; install the package vorn-explorer, or build it with "
                   "scripts/make/explorer.sh" );
   }
   const std::string url = urlOf( path ) + fragment;
   output.write( url + '\n' );
   const bool hasDisplay =
      !environment( "DISPLAY" ).empty() || !environment( "WAYLAND_DISPLAY" ).empty();
   if( arguments.opens && hasDisplay ) {
      output.flush();
      open( url, !fragment.empty() );
   }
}

void checkUsage( const ExploreArguments& arguments, const CLI::App& verb ) {
   if( arguments.pair.table.empty() ) {
      for( const auto* const option :
           { "--chip", "--variant", "--entry", "--array", "--identifier" } ) {
         if( verb.count( option ) > 0 ) {
            throw CLI::RequiresError( option, "TABLE" );
         }
      }
   } else if( arguments.pair.chip.empty() ) {
      throw CLI::RequiredError( "--chip" );
   }
}

} // namespace

VerbRun addExplore( CLI::App& verb ) {
   const auto arguments = std::make_shared<ExploreArguments>();
   addPair( verb, arguments->pair );
   verb.get_option( "TABLE" )->required( false );
   verb.get_option( "--chip" )->required( false );
   verb.get_option( "--variant" )->description( "Variant of the table, by the tag if not given" );
   verb.add_option( "IMAGE", arguments->image, "The image, a fresh entry if not given" );
   addIndex( verb, arguments->index );
   addImageFormat( verb, arguments->format );
   verb.add_flag_callback(
      "--no-open", [arguments] { arguments->opens = false; }, "Only print the link" );
   verb.final_callback( [arguments, &verb] { checkUsage( *arguments, verb ); } );
   describe( verb,
             "Prints a link to the explorer, a page that shows the fields of images, changes "
             "their values and compares layouts, and opens it with xdg-open if there is a "
             "display. With TABLE, the page shows that pair, and the image with it. It needs "
             "neither a server nor a network.\n\n"
             "The page is that of the package vorn-explorer, or what scripts/make/explorer.sh has "
             "built; the environment variable VORN_EXPLORER names another.\n\n" +
                imagesParagraphs() + "\n\n" + chipTypesParagraph(),
             "  vorn explore\n"
             "  vorn explore TcamActionTable --chip BCM88690_B0 4523010000000000" );
   return [arguments]( Output& output ) { explore( *arguments, output ); };
}

} // namespace Vorn
