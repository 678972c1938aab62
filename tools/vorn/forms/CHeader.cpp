// A C header of the fields of layouts, for programs without this library.
#include "forms/Exports.h"

#include <Vorn/Value.h>

#include <algorithm>

namespace Vorn {

namespace {

const std::string introduction =
   R"(/* Entries of tables and registers, written by `vorn export --format c-header`.
 *
 * An entry is an array of bytes, byte 0 first; bit 0 is the lowest bit of byte 0. Neither alignment
 * nor the machine's byte order matters, and no byte is touched but those that the field is in.
 *
 * For each pair P of table and chip type, such as LifTable_BCM88690_B0_3 of variant 3:
 *
 *    P_BYTES               bytes of an entry
 *    P_blank( entry )      makes it a fresh entry: zero but for the tag
 *    P_holdsTag( entry )   whether it can be an entry of the pair; only where there is a tag
 *
 * and for each field f:
 *
 *    P_f_OFFSET, P_f_WIDTH     where it begins, and its width, both in bits
 *    P_f_MASK                  ones in all its bits: the largest value
 *    P_f_get( entry )          its value
 *    P_f_set( entry, value )   sets it; bits of the value above the width are dropped
 *    P_f_TAG                   what it holds in every entry; only of a tag, which has no setter
 *
 * A field of more than 64 bits is P_f_WORDS words of 64 bits, the least significant first, to or
 * from which _get and _set copy it; P_f_MASK is the mask of the last one. */
#include <stdbool.h>
#include <stdint.h>
)";

// Bits of a field in one byte of an entry.
struct Part {
   U32 byte;
   U32 shift; // in the byte
   U32 bits;
   U32 at; // in the value
};

std::vector<Part> partsOf( U32 offset, U32 width ) {
   std::vector<Part> parts;
   for( U32 done = 0; done < width; done += parts.back().bits ) {
      const U32 shift = ( offset + done ) % 8;
      parts.push_back(
         { ( offset + done ) / 8, shift, std::min( 8 - shift, width - done ), done } );
   }
   return parts;
}

std::string hex( U64 number ) { return hexOf( number ) + 'U'; }

std::string mask( U32 width ) {
   const U64 ones = ~U64( 0 ) >> ( 64 - width );
   return width <= 32 ? hex( ones ) : "UINT64_C( " + hexOf( ones ) + " )";
}

// The narrowest type of C for a field of that width.
std::string typeOf( U32 width ) {
   return width <= 8 ? "uint8_t" : width <= 16 ? "uint16_t" : width <= 32 ? "uint32_t" : "uint64_t";
}

// The bits at an offset of `entry`, at most 64, as an expression.
std::string getting( U32 offset, U32 width ) {
   const std::string work = width <= 32 ? "uint32_t" : "uint64_t";
   std::string sum;
   for( const Part& part : partsOf( offset, width ) ) {
      std::string term = "entry[" + std::to_string( part.byte ) + "]";
      if( part.shift > 0 ) {
         term = "( " + term + " >> " + std::to_string( part.shift ) + " )";
      }
      if( part.shift + part.bits < 8 ) {
         term = "( " + term + " & " + mask( part.bits ) + " )";
      }
      term = "(" + work + ")" + term;
      if( part.at > 0 ) {
         term = "( " + term + " << " + std::to_string( part.at ) + " )";
      }
      sum += ( sum.empty() ? "" : " |\n      " ) + term;
   }
   return sum;
}

// The statements that set them to the bits of `value`, a variable of the type `work`.
std::string setting( U32 offset, U32 width, const std::string& value ) {
   std::string statements;
   for( const Part& part : partsOf( offset, width ) ) {
      const std::string byte = "entry[" + std::to_string( part.byte ) + "]";
      std::string bits =
         part.at > 0 ? "( " + value + " >> " + std::to_string( part.at ) + " )" : value;
      if( part.bits < 8 ) {
         const U64 ones = ( 1U << part.bits ) - 1;
         bits = "( " + bits + " & " + hex( ones ) + " )";
         if( part.shift > 0 ) {
            bits = "( " + bits + " << " + std::to_string( part.shift ) + " )";
         }
         bits = "( " + byte + " & " + hex( 0xff & ~( ones << part.shift ) ) + " ) | " + bits;
      }
      statements += "   " + byte + " = (uint8_t)( " + bits + " );\n";
   }
   return statements;
}

class Header {
public:
   std::string text = introduction;

   void add( const Layout& layout );

private:
   void define( const std::string& name, const std::string& value ) {
      text += "#define " + name + ' ' + value + '\n';
   }
   void add( const std::string& name, const Field& field );
   void addWide( const std::string& name, const Field& field );
};

void Header::add( const Layout& layout ) {
   const auto pair = symbolOf( layout );
   text += "\n/* " + layout.pairText() + " */\n#ifndef " + pair + "_BYTES\n";
   define( pair + "_BYTES", std::to_string( layout.bytes() ) + 'U' );
   text += "\nstatic inline void " + pair +
           "_blank( uint8_t *entry ) {\n   for( uint32_t i = 0; i < " + pair +
           "_BYTES; ++i ) {\n      entry[i] = 0;\n   }\n";
   const auto blank = layout.blank();
   for( std::size_t i = 0; i < blank.size(); ++i ) {
      if( blank[i] != 0 ) {
         text += "   entry[" + std::to_string( i ) + "] = " + hex( blank[i] ) + ";\n";
      }
   }
   text += "}\n";
   for( const Field& field : layout.fields() ) {
      text += '\n';
      const auto name = pair + '_' + std::string( field.name );
      define( name + "_OFFSET", std::to_string( field.offset ) + 'U' );
      define( name + "_WIDTH", std::to_string( field.width ) + 'U' );
      field.width > 64 ? addWide( name, field ) : add( name, field );
   }
   std::string condition;
   for( const TagField& tag : layout.tag() ) {
      const auto name = pair + '_' + std::string( tag.field.name );
      define( name + "_TAG", hex( tag.value ) );
      condition += ( condition.empty() ? "" : " &&\n          " ) + name +
                   "_get( entry ) == " + name + "_TAG";
   }
   if( !condition.empty() ) {
      text += "\nstatic inline bool " + pair + "_holdsTag( const uint8_t *entry ) {\n   return " +
              condition + ";\n}\n";
   }
   text += "#endif\n";
}

void Header::add( const std::string& name, const Field& field ) {
   define( name + "_MASK", mask( field.width ) );
   const auto type = typeOf( field.width );
   text += "static inline " + type + ' ' + name + "_get( const uint8_t *entry ) {\n   return (" +
           type + ")( " + getting( field.offset, field.width ) + " );\n}\n";
   if( !field.readOnly ) {
      text += "static inline void " + name + "_set( uint8_t *entry, " + type + " value ) {\n" +
              setting( field.offset, field.width, "value" ) + "}\n";
   }
}

void Header::addWide( const std::string& name, const Field& field ) {
   const U32 words = ( field.width + 63 ) / 64;
   define( name + "_WORDS", std::to_string( words ) + 'U' );
   define( name + "_MASK",
           "UINT64_C( " + hexOf( ~U64( 0 ) >> ( 64 * words - field.width ) ) + " )" );
   std::string get;
   std::string set;
   for( U32 word = 0; word < words; ++word ) {
      const U32 offset = field.offset + 64 * word;
      const U32 width = std::min( field.width - 64 * word, 64U );
      const auto element = "words[" + std::to_string( word ) + ']';
      get += "   " + element + " = (uint64_t)( " + getting( offset, width ) + " );\n";
      set += setting( offset, width, element );
   }
   text += "static inline void " + name + "_get( const uint8_t *entry, uint64_t *words ) {\n" +
           get + "}\nstatic inline void " + name +
           "_set( uint8_t *entry, const uint64_t *words ) {\n" + set + "}\n";
}

} // namespace

std::string symbolOf( const Layout& layout ) {
   return std::string( layout.table() ) + '_' + layout.chip().name +
          ( layout.variantText().empty() ? "" : '_' + std::to_string( layout.variant() ) );
}

std::string cHeader( std::span<const Layout> layouts ) {
   Header header;
   for( const Layout& layout : layouts ) {
      header.add( layout );
   }
   return std::move( header.text );
}

} // namespace Vorn
