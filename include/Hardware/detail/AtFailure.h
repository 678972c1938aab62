// How a view of a pair that is known at compile time fails: through the C library's __assert_fail,
// with the texts of the views of pairs chosen at run time.
#pragma once

#include <Kelvar/Types.h>

#include <cstddef>
#include <string_view>

namespace Hardware::Detail {

// Under a name of its own, since <cassert> declares that the function doesn't throw: a program may
// replace it to observe failures.
[[noreturn]] void atAssertFail( const char* expression, const char* file, unsigned line,
                                const char* function ) __asm__( "__assert_fail" );

// A field as its class declares it.
struct AtField {
   std::string_view table; // the class's name
   std::string_view name;
   std::string_view type;
   U16 identifier;
   U16 line;
   U8 typeBytes;
   bool readOnly;
};

// A text in a fixed buffer that is large enough for all texts below.
class AtText {
public:
   template<class... Pieces>
   explicit AtText( const Pieces&... pieces ) {
      ( append( pieces ), ... );
   }

   const char* c_str() const { return characters_; }

private:
   void append( std::string_view piece ) {
      for( const char character : piece ) {
         if( length_ + 1 < sizeof characters_ ) {
            characters_[length_++] = character;
         }
      }
   }
   void append( U64 number ) { appendNumber( number, 10 ); }
   struct Hex {
      U64 number;
   };
   void append( Hex hex ) { appendNumber( hex.number, 16 ); }
   void appendNumber( U64 number, unsigned base ) {
      if( number >= base ) {
         appendNumber( number / base, base );
      }
      append( std::string_view( &"0123456789abcdef"[number % base], 1 ) );
   }

   std::size_t length_ = 0;
   char characters_[320] = {};

public:
   static Hex hex( U64 number ) { return { number }; }
};

[[noreturn]] inline void atFail( const AtText& expression, unsigned line,
                                 const AtText& signature ) {
   atAssertFail( expression.c_str(), "VornTunnelMetaInfo", line, signature.c_str() );
}

// "<f> <= 0x<max>"
[[noreturn, gnu::cold, gnu::noinline]] inline void atFailBound( const AtField& field,
                                                                U64 maximum ) {
   const bool byValue = field.typeBytes <= sizeof( U32 );
   atFail( AtText( field.name, " <= 0x", AtText::hex( maximum ) ), field.line,
           AtText( "void Hardware::", field.table, "::", field.name, byValue ? "Is(" : "Is(const ",
                   field.type, byValue ? ")" : "&)" ) );
}

// "len_ >= <bytes>" where a view is made.
[[noreturn, gnu::cold, gnu::noinline]] inline void atFailLength( std::string_view table,
                                                                 U64 bytes ) {
   atFail( AtText( "len_ >= ", bytes ), __LINE__,
           AtText( "Hardware::", table, "::", table, "(Hardware::ChipType, U8*, U16, bool, U8)" ) );
}

// The same of the whole entry, a value of the type `type`.
[[noreturn, gnu::cold, gnu::noinline]] inline void
atFailEntryLength( std::string_view table, std::string_view type, U64 bytes ) {
   atFail( AtText( "len_ >= ", bytes ), __LINE__,
           AtText( type, " Hardware::", table, "::getAllFields() const" ) );
}

// An identifier of no field, or of no settable field, of the class; `operation` is the part of the
// signature after the class's name.
[[noreturn, gnu::cold, gnu::noinline]] inline void
atFailIdentifier( std::string_view result, std::string_view table, std::string_view operation ) {
   atFail( AtText( "false" ), __LINE__,
           AtText( "virtual ", result, " Hardware::", table, operation ) );
}

// A field by its identifier that the pair lacks: the expression is "0", or names the one variant
// that has it.
[[noreturn, gnu::cold, gnu::noinline]] inline void atFailPlace( const AtField& field,
                                                                bool inOneVariant, U64 variant,
                                                                std::string_view result,
                                                                std::string_view operation ) {
   atFail( inOneVariant ? AtText( "variant_ == ", variant ) : AtText( "0" ), field.line,
           AtText( result, " Hardware::", field.table, "::", field.name, operation ) );
}

[[noreturn, gnu::cold, gnu::noinline]] inline void atFailAddress( std::string_view table,
                                                                  std::string_view index,
                                                                  std::string_view relation,
                                                                  U64 limit ) {
   atFail( AtText( index, relation, limit ), __LINE__,
           AtText( "static bool Hardware::", table,
                   "::getSchanAddress(U32, U8, U32&, U8&, U8&, U16, U32, U16)" ) );
}

} // namespace Hardware::Detail
