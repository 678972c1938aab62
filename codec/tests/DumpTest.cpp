// Dumps: every pair of every table in every form, and the messages for bad ones.
#include "Pairs.h"

#include <Vorn/Dump.h>
#include <Vorn/Text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Vorn::DumpReader;
using Vorn::ImageFormat;

using Bytes = std::vector<U8>;

constexpr U32 entries = 3;

// Entries of the pair one after another, with any bits but for the tag.
Bytes dumpOf( const Vorn::Layout& layout ) {
   Bytes dump;
   U32 state = 12345;
   for( U32 i = 0; i < std::min( entries, layout.info().entries ); ++i ) {
      Bytes image( layout.bytes() );
      for( U8& byte : image ) {
         state = state * 1664525 + 1013904223;
         byte = static_cast<U8>( state >> 24 );
      }
      for( const auto& [field, value] : layout.tag() ) {
         layout.set( image, field, value );
      }
      dump.insert( dump.end(), image.begin(), image.end() );
   }
   return dump;
}

std::string digits( std::span<const U8> bytes, std::string_view between = {} ) {
   std::string text;
   Vorn::appendHex( text, bytes, between );
   return text;
}

std::string offsetText( std::size_t offset, std::size_t length ) {
   std::string text =
      digits( Bytes{ 0, 0, static_cast<U8>( offset >> 8 ), static_cast<U8>( offset ) } );
   return text.substr( text.size() - length );
}

std::string word( std::span<const U8> bytes ) {
   return digits( Bytes{ bytes[3], bytes[2], bytes[1], bytes[0] } );
}

// The lines of a dump, of at most 16 bytes each.
std::string rows( const Bytes& dump,
                  const std::function<std::string( std::size_t, std::span<const U8> )>& row ) {
   std::string text;
   for( std::size_t at = 0; at < dump.size(); at += 16 ) {
      text +=
         row( at, std::span( dump ).subspan( at, std::min<std::size_t>( 16, dump.size() - at ) ) );
   }
   return text;
}

std::string asBinary( const Vorn::Layout&, const Bytes& dump ) {
   return { dump.begin(), dump.end() };
}

std::string asCanonical( const Vorn::Layout&, const Bytes& dump ) {
   return rows( dump,
                []( std::size_t at, std::span<const U8> row ) {
                   return offsetText( at, 8 ) + "  " + digits( row, " " ) + "  |" +
                          std::string( row.size(), '.' ) + "|\n";
                } ) +
          offsetText( dump.size(), 8 ) + '\n';
}

std::string asHexdump( const Vorn::Layout&, const Bytes& dump ) {
   return rows( dump,
                []( std::size_t at, std::span<const U8> row ) {
                   std::string text = offsetText( at, 7 );
                   for( std::size_t i = 0; i < row.size(); i += 2 ) {
                      text += ' ' + digits( Bytes{ row[i + 1], row[i] } );
                   }
                   return text + '\n';
                } ) +
          offsetText( dump.size(), 7 ) + '\n';
}

std::string octalText( std::size_t offset ) {
   char text[32];
   std::snprintf( text, sizeof( text ), "%07zo", offset );
   return text;
}

// As numbers of that many bytes.
std::string sixDigits( std::size_t at ) { return offsetText( at, 6 ); }

std::string decimalText( std::size_t at ) {
   const auto digits = std::to_string( at );
   return std::string( 7 - digits.size(), '0' ) + digits;
}

template<std::size_t size, std::string ( *offset )( std::size_t ) = octalText>
std::string asOd( const Vorn::Layout&, const Bytes& dump ) {
   return rows( dump,
                []( std::size_t at, std::span<const U8> row ) {
                   std::string text = offset( at );
                   for( std::size_t i = 0; i < row.size(); i += size ) {
                      const auto number = row.subspan( i, size );
                      text += ' ' + digits( Bytes( number.rbegin(), number.rend() ) );
                   }
                   return text + '\n';
                } ) +
          offset( dump.size() ) + '\n';
}

std::string asXxd( const Vorn::Layout&, const Bytes& dump ) {
   return rows( dump, []( std::size_t at, std::span<const U8> row ) {
      std::string text = offsetText( at, 8 ) + ':';
      for( std::size_t i = 0; i < row.size(); i += 2 ) {
         text += ' ' + digits( row.subspan( i, 2 ) );
      }
      return text + "  " + std::string( row.size(), '#' ) + '\n';
   } );
}

std::string asStream( const Vorn::Layout&, const Bytes& dump ) {
   std::string text = "# by hand\r\n" + digits( dump ) + '\n';
   for( std::size_t at = 35; at < text.size(); at += 31 ) {
      text.insert( at, "\n" );
   }
   return text;
}

// A line for each entry.
std::string lines( const Vorn::Layout& layout, const Bytes& dump,
                   const std::function<std::string( std::span<const U8> )>& line ) {
   std::string text;
   for( std::size_t at = 0; at < dump.size(); at += layout.bytes() ) {
      text += line( std::span( dump ).subspan( at, layout.bytes() ) );
   }
   return text;
}

std::string asLines( const Vorn::Layout& layout, const Bytes& dump ) {
   return "\xef\xbb\xbf" + lines( layout, dump, []( std::span<const U8> image ) {
             return digits( image, " " ) + "  # a comment\r\n";
          } );
}

std::string asWords( const Vorn::Layout& layout, const Bytes& dump ) {
   return lines( layout, dump, []( std::span<const U8> image ) {
      std::string text;
      for( std::size_t i = 0; i < image.size(); i += 4 ) {
         text += " 0x" + word( image.subspan( i, 4 ) );
      }
      return text + '\n';
   } );
}

std::string asNumbers( const Vorn::Layout& layout, const Bytes& dump ) {
   return lines( layout, dump, []( std::span<const U8> image ) {
      return "0x" + digits( Bytes( image.rbegin(), image.rend() ) ) + '\n';
   } );
}

std::string asJson( const Vorn::Layout& layout, const Bytes& dump ) {
   return lines( layout, dump, [&]( std::span<const U8> image ) {
      return R"({"table":")" + std::string( layout.table() ) + R"(","chip":")" +
             layout.chip().name + R"(","variant":)" + std::to_string( layout.variant() ) +
             R"(,"image":")" + digits( image ) + "\"}\n";
   } );
}

std::string asCsv( const Vorn::Layout& layout, const Bytes& dump ) {
   return "chip,table,variant,image\n" + lines( layout, dump, [&]( std::span<const U8> image ) {
             return std::to_string( layout.chip().number ) + ',' + std::string( layout.table() ) +
                    ',' + std::to_string( layout.variant() ) + ",\"" + digits( image ) + "\"\n";
          } );
}

// As spreadsheets write it where they are asked to put everything in quotes.
std::string asQuotedCsv( const Vorn::Layout& layout, const Bytes& dump ) {
   std::string text = "\"";
   for( const char c : asCsv( layout, dump ) ) {
      if( c == ',' ) {
         text += "\",\"";
      } else if( c == '\n' ) {
         text += "\"\n\"";
      } else if( c != '"' ) {
         text += c;
      }
   }
   text.pop_back();
   return text;
}

struct Form {
   std::string_view name;
   std::string ( *write )( const Vorn::Layout&, const Bytes& );
   ImageFormat format = ImageFormat::automatic;
};

const Form forms[] = {
   { "binary", asBinary, ImageFormat::binary },
   { "hexdump -C", asCanonical },
   { "hexdump", asHexdump },
   { "od -v -tx1", asOd<1> },
   { "od -v -tx2", asOd<2> },
   { "od -v -tx4", asOd<4> },
   { "od -v -Ax -tx1", asOd<1, sixDigits> },
   { "od -v -Ax -tx2", asOd<2, sixDigits> },
   { "od -v -Ax -tx4", asOd<4, sixDigits> },
   { "od -v -Ad -tx2", asOd<2, decimalText> },
   { "od -v -Ad -tx4", asOd<4, decimalText> },
   { "xxd", asXxd },
   { "xxd -p", asStream, ImageFormat::stream },
   { "lines of bytes", asLines },
   { "lines of words", asWords },
   { "numbers", asNumbers, ImageFormat::number },
   { "JSON", asJson },
   { "CSV", asCsv },
   { "CSV in quotes", asQuotedCsv },
};

Vorn::DumpOptions optionsOf( const Vorn::Layout& layout, ImageFormat format ) {
   Vorn::DumpOptions options;
   options.table = layout.table();
   options.chip = &layout.chip();
   options.variant = layout.variant();
   options.format = format;
   return options;
}

// The images that are read, one after another, and then the Error, if there is one.
std::pair<Bytes, std::string> read( const Vorn::DumpOptions& options, std::string_view text ) {
   Bytes images;
   DumpReader reader( options );
   Vorn::TextBytes bytes( text, "dump" );
   reader.begin( bytes );
   const auto error = Testing::errorOf( [&] {
      while( reader.next() ) {
         images.insert( images.end(), reader.entry().image.begin(), reader.entry().image.end() );
      }
   } );
   return { images, error };
}

// A text, seven bytes at a time.
class Trickle : public Vorn::TextBytes {
public:
   using TextBytes::TextBytes;

   std::size_t read( char* to, std::size_t size ) override {
      return TextBytes::read( to, std::min<std::size_t>( size, 7 ) );
   }
};

const Vorn::Layout& lif() {
   static const Vorn::Layout layout( "LifTable", 10, 3 );
   return layout;
}

} // namespace

// Of six digits, the offsets of `od -Ax` might be bytes: those of the two first rows decide.
TEST( Dump, ofOdMayHaveHexadecimalOffsets ) {
   const Vorn::Layout layout( "TcamActionTable", 10 );
   const auto options = optionsOf( layout, ImageFormat::automatic );
   const std::string text = "000000 00012345 00000000 00012345 00000000  >E#......E#......<\n"
                            "*\n"
                            "000030 00000007 00000000  >#|.>..  <\n"
                            "000038\n";
   const Bytes action{ 0x45, 0x23, 1, 0, 0, 0, 0, 0 };
   Bytes expected;
   for( int i = 0; i < 6; ++i ) {
      expected.insert( expected.end(), action.begin(), action.end() );
   }
   expected.insert( expected.end(), { 7, 0, 0, 0, 0, 0, 0, 0 } );
   EXPECT_EQ( read( options, text ), std::pair( expected, std::string( "none" ) ) );
   // After comments, and with decimal offsets that only the row after the asterisk shows.
   EXPECT_EQ( read( options, "\n# lab\n" + text ), std::pair( expected, std::string( "none" ) ) );
   EXPECT_EQ( read( options, "0000000 00012345 00000000 00012345 00000000\n*\n"
                             "0000048 00000007 00000000\n0000056\n" ),
              std::pair( expected, std::string( "none" ) ) );
   EXPECT_EQ( read( options, "000000 00012345 00000000\n000008 00012345 00000000\n"
                             "000018 00012345 00000000\n" )
                 .second,
              "dump:3:1: offset 000018 where 00000010 is due" );
   EXPECT_EQ( read( options, "000000 00012345 00000000\n000008 00012345 00000000\n" ).second,
              "dump:3:1: the hexdump is cut off: it ends without the offset of its end" );
   // Other rows are lines of bytes.
   EXPECT_EQ( read( options, "000000 01 02 03 04 05\n000000 06 07 08 09 10\n" ),
              std::pair( Bytes( { 0, 0, 0, 1, 2, 3, 4, 5, 0, 0, 0, 6, 7, 8, 9, 16 } ),
                         std::string( "none" ) ) );
}

TEST( ByteLines, areThoseOfTheBytes ) {
   Trickle bytes( "seven b\n\nand eight\r\nthe last", "text" );
   Vorn::ByteLines lines( bytes );
   std::string_view line;
   for( const auto* const expected : { "seven b", "", "and eight\r", "the last" } ) {
      ASSERT_TRUE( lines.next( line ) );
      EXPECT_EQ( line, expected );
   }
   EXPECT_EQ( lines.place(), "text:4" );
   EXPECT_FALSE( lines.next( line ) );
}

TEST( ByteLines, areNoLongerThanTheLongest ) {
   const std::string longest( Vorn::ByteLines::longest, 'x' );
   const std::string text = longest + '\n' + longest + 'x';
   Vorn::TextBytes bytes( text, "text" );
   Vorn::ByteLines lines( bytes );
   std::string_view line;
   EXPECT_TRUE( lines.next( line ) );
   EXPECT_EQ( line, longest );
   EXPECT_EQ( Testing::errorOf( [&] { lines.next( line ); } ),
              "text:2: the line is longer than 1048576 bytes" );
}

TEST( Dump, everyPairInEveryForm ) {
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      const Bytes dump = dumpOf( layout );
      for( const Form& form : forms ) {
         const auto text = form.write( layout, dump );
         const auto [images, error] = read( optionsOf( layout, form.format ), text );
         EXPECT_EQ( images, dump ) << form.name << " of " << layout.pairText() << ": " << error;
         EXPECT_EQ( error, "none" ) << form.name << " of " << layout.pairText();
      }
   }
}

TEST( Dump, binaryIsRecognised ) {
   const Bytes dump = dumpOf( lif() );
   EXPECT_EQ( read( optionsOf( lif(), ImageFormat::automatic ), asBinary( lif(), dump ) ).first,
              dump );
}

TEST( Dump, whereEntriesLie ) {
   Vorn::DumpOptions options;
   options.table = "TcamActionTable";
   options.chip = &Vorn::chipOf( 10 );
   options.first = { 7, 3, 1 };
   options.stride = 12;
   DumpReader reader( options );
   const std::string text = "0500000000000000 ffffffff 0600000000000000";
   options.format = ImageFormat::stream;
   reader = DumpReader( options );
   Vorn::TextBytes bytes( text, "dump" );
   reader.begin( bytes );
   for( const U64 entry : { 7u, 8u } ) {
      ASSERT_TRUE( reader.next() );
      EXPECT_EQ( reader.entry().entry, entry );
      EXPECT_EQ( reader.entry().array, U64( 3 ) );
      EXPECT_EQ( reader.entry().identifier, U64( 1 ) );
      EXPECT_EQ( reader.entry().layout->get( reader.entry().image, "action" ), entry - 2 );
      EXPECT_EQ( reader.entry().address,
                 reader.entry().layout->address( { entry, 3, 1 } )->schanAddress );
   }
   EXPECT_FALSE( reader.next() );
}

TEST( Dump, theVariantComesFromTheTag ) {
   Vorn::DumpOptions options = optionsOf( lif(), ImageFormat::automatic );
   options.variant.reset();
   std::string text;
   for( const U64 variant : { 3u, 1u, 4u } ) {
      text += digits( Vorn::Layout( "LifTable", 10, variant ).blank() ) + '\n';
   }
   DumpReader reader( options );
   text += std::string( 160, '0' ) + '\n';
   Vorn::TextBytes bytes( text, "dump" );
   reader.begin( bytes );
   for( const U8 variant : std::initializer_list<U8>{ 3, 1, 4 } ) {
      ASSERT_TRUE( reader.next() );
      EXPECT_EQ( reader.entry().layout->variant(), variant );
      EXPECT_FALSE( reader.entry().isEmpty );
      EXPECT_EQ( reader.entry().doubt, "" );
   }
   ASSERT_TRUE( reader.next() );
   EXPECT_TRUE( reader.entry().isEmpty );
   EXPECT_FALSE( reader.next() );
}

TEST( Dump, refused ) {
   const auto options = [&]( ImageFormat format ) { return optionsOf( lif(), format ); };
   const auto expect = [&]( ImageFormat format, const std::string& text,
                            const std::string& message ) {
      EXPECT_EQ( read( options( format ), text ).second, message );
   };
   const std::string entry = digits( lif().blank() );
   expect( ImageFormat::stream, entry + "0102",
           "dump:0x50: 2 bytes are left over after 1 entry of LifTable on BCM88690_B0 variant 3, "
           "which have 80 bytes each; --stride says where entries lie further apart" );
   expect( ImageFormat::stream, "0a\n0",
           "dump:2:1: an odd number of digits; write two for each byte" );
   expect( ImageFormat::stream, "0a\n0x",
           "dump:2:2: bad digit \"x\"; a stream is hexadecimal "
           "digits, two for each byte, and blanks" );
   expect( ImageFormat::automatic, "00000000: 0000 0000  ....\n00000008: 00  .\n",
           "dump:2:1: offset 00000008 where 00000004 is due" );
   expect( ImageFormat::automatic, "00000000: 00000000  ....\n",
           "dump:1:11: bad byte \"00000000\"; groups of more than two bytes may be words; print "
           "them with `xxd` alone" );
   // The bytes are "VW", 8b 96 and so on; in the second text there are fewer than in a whole row.
   const std::string words = "words of two bytes, as `xxd -e -g2` prints them; print bytes with "
                             "`xxd` alone";
   expect( ImageFormat::automatic, "00000000: 5756 968b 0000 0000  VW......\n",
           "dump:1:11: " + words );
   expect( ImageFormat::automatic, "00000000: 5756 968b                                VW..\n",
           "dump:1:11: " + words );
   expect( ImageFormat::automatic, "0000000 0000 0000\n",
           "dump:2:1: the hexdump is cut off: it ends without the offset of its end" );
   expect( ImageFormat::words, " 00000000 00000001\n*\n",
           "dump:2:1: \"*\" stands for lines that were left out; print them with `od -v`" );
   expect( ImageFormat::number, "0x1 0x2",
           "dump:1:5: a second piece \"0x2\"; write one number in hexadecimal digits, the highest "
           "first" );
   expect( ImageFormat::automatic, "image,entry\n" + entry + '\n',
           "dump:2:1: the row has 1 cell, the header 2" );
   expect( ImageFormat::automatic, "image,image\n", "dump:1:7: a second column \"image\"" );
}
