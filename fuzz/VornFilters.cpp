// Any text as a condition on the fields of an entry, and conditions that are written from a tree,
// whose answer for any image a model of bits knows.
#include "Finding.h"

#include "support/Bits.h"

#include <Vorn/Error.h>
#include <Vorn/Filter.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace Fuzz {
namespace {

using Testing::Bits;
using Testing::Image;

// Less, equal or greater.
int compared( const Bits& left, const Bits& right ) {
   for( std::size_t bit = left.size(); bit-- > 0; ) {
      if( left[bit] != right[bit] ) {
         return left[bit] ? 1 : -1;
      }
   }
   return 0;
}

// A condition as text, and its answer.
struct Condition {
   std::string text;
   bool holds;
};

class Conditions {
public:
   Conditions( const Vorn::Layout& layout, const Image& image, FuzzedDataProvider& input )
      : layout_( layout ), image_( image ), input_( input ) {}

   Condition any( int depth ) {
      switch( input_.ConsumeIntegralInRange( 0, depth > 0 ? 8 : 4 ) ) {
      case 0:
      case 1:
         return comparison();
      case 2:
         return membership();
      case 3: {
         const Operand one = operand();
         return { one.text, one.value.any() };
      }
      case 4:
         return twoFields();
      case 5: {
         const Condition inner = any( depth - 1 );
         return { pick( { "! ( ", "not(" } ) + inner.text + " )", !inner.holds };
      }
      case 6: {
         const Condition inner = any( depth - 1 );
         return { '(' + inner.text + pick( { ")", " )" } ), inner.holds };
      }
      default: {
         const Condition left = any( depth - 1 );
         const Condition right = any( depth - 1 );
         const bool isBoth = input_.ConsumeBool();
         return { '(' + left.text + ')' +
                     ( isBoth ? pick( { " && ", "&&", " and " } )
                              : pick( { " || ", "||", " or " } ) ) +
                     '(' + right.text + ')',
                  isBoth ? left.holds && right.holds : left.holds || right.holds };
      }
      }
   }

private:
   struct Operand {
      std::string text;
      Bits value;
      unsigned width;
      Bits mask;
   };

   std::string pick( std::initializer_list<const char*> texts ) {
      return *( texts.begin() +
                input_.ConsumeIntegralInRange( std::size_t( 0 ), texts.size() - 1 ) );
   }

   Operand operand() {
      const auto fields = layout_.fields();
      const auto& field =
         fields[input_.ConsumeIntegralInRange( std::size_t( 0 ), fields.size() - 1 )];
      const Bits value = Testing::bitsAt( image_, field.offset, field.width );
      const Bits ones = Testing::lowOnes( field.width );
      if( input_.ConsumeIntegralInRange( 0, 3 ) > 0 ) {
         return { std::string( field.name ), value, field.width, ones };
      }
      Bits mask = some( field.width );
      mask[0] = mask[0] || mask.none();
      return { std::string( field.name ) + pick( { " & ", "&" } ) + Testing::hexOf( mask ),
               value & mask, field.width, mask };
   }

   Bits some( unsigned width ) {
      Image bytes = input_.ConsumeBytes<U8>( ( width + 7 ) / 8 );
      bytes.resize( ( width + 7 ) / 8 );
      return Testing::bitsAt( bytes, 0, width );
   }

   // One that is near the field's value, or any.
   Bits valueFor( const Operand& operand ) {
      return ( input_.ConsumeBool() ? operand.value : some( operand.width ) ) & operand.mask;
   }

   std::string written( const Bits& value ) {
      bool isShort = true;
      for( std::size_t bit = 63; bit < value.size(); ++bit ) {
         isShort = isShort && !value[bit];
      }
      return isShort && input_.ConsumeBool() ? std::to_string( value.to_ullong() )
                                             : Testing::hexOf( value );
   }

   static bool holds( const std::string& sign, int order ) {
      return sign == "=="   ? order == 0
             : sign == "!=" ? order != 0
             : sign == "<"  ? order < 0
             : sign == "<=" ? order <= 0
             : sign == ">"  ? order > 0
                            : order >= 0;
   }

   Condition comparison() {
      const Operand left = operand();
      const Bits value = valueFor( left );
      auto sign = pick( { "==", "!=", "<", "<=", ">", ">=" } );
      const bool isExchanged = input_.ConsumeBool();
      // Nothing is less than 0, which is refused.
      if( value.none() && sign == ( isExchanged ? ">" : "<" ) ) {
         sign = "==";
      }
      const auto blank = pick( { "", " " } );
      const int order = compared( left.value, value );
      return isExchanged ? Condition{ written( value ) + blank + sign + blank + left.text,
                                      holds( sign, -order ) }
                         : Condition{ left.text + blank + sign + blank + written( value ),
                                      holds( sign, order ) };
   }

   Condition twoFields() {
      const Operand left = operand();
      const Operand right = operand();
      const auto sign = pick( { "==", "!=", "<", "<=", ">", ">=" } );
      return { left.text + ' ' + sign + ' ' + right.text,
               holds( sign, compared( left.value, right.value ) ) };
   }

   Condition membership() {
      const Operand left = operand();
      const bool isNot = input_.ConsumeBool();
      std::string text;
      bool isIn = false;
      for( int left_ = input_.ConsumeIntegralInRange( 1, 3 ); left_ > 0; --left_ ) {
         Bits first = valueFor( left );
         text += text.empty() ? "" : ",";
         if( input_.ConsumeBool() ) {
            isIn = isIn || first == left.value;
            text += written( first );
            continue;
         }
         Bits last = valueFor( left );
         if( compared( first, last ) > 0 ) {
            std::swap( first, last );
         }
         isIn = isIn || ( compared( first, left.value ) <= 0 && compared( left.value, last ) <= 0 );
         text += written( first ) + pick( { "..", " .. " } ) + written( last );
      }
      return { left.text + ( isNot ? " not in " : " in " ) + pick( { "{ ", "{" } ) + text + '}',
               isIn != isNot };
   }

   const Vorn::Layout& layout_;
   const Image& image_;
   FuzzedDataProvider& input_;
};

void runText( const std::string& text, const Vorn::Layout& layout, const Image& image ) {
   try {
      const Vorn::Filter filter( text, layout );
      const bool holds = filter.matches( image );
      Vorn::Filter::require( text );
      Vorn::PairFilter pairs( text, std::span( &layout, 1 ) );
      if( pairs.matches( layout, image ) != holds || !pairs.leftOut().empty() ) {
         found( "another answer for the pair" );
      }
      const Vorn::Filter negation( "!(" + text + ")", layout );
      if( negation.matches( image ) == holds ) {
         found( "a condition and its negation agree: " + text );
      }
   } catch( const Vorn::BadText& bad ) {
      if( bad.at() > text.size() + 3 || bad.message().empty() ) {
         found( "the error has no place: " + bad.message() );
      }
   }
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   using namespace Fuzz;
   static const std::vector<Vorn::Layout> layouts{ { "LifTable", 10, 0 },
                                                   { "TcamBankTableFormatter", "BCM88690_B0" },
                                                   { "IsemMgmtReq", 12, 3 },
                                                   { "TcamActionTable", 10 } };
   FuzzedDataProvider input( data, size );
   const auto& layout =
      layouts[input.ConsumeIntegralInRange( std::size_t( 0 ), layouts.size() - 1 )];
   const bool isText = input.ConsumeBool();
   auto image = input.ConsumeBytes<U8>( isText ? 8 : layout.bytes() );
   image.resize( layout.bytes() );
   if( isText ) {
      runText( input.ConsumeRemainingBytesAsString(), layout, image );
      return 0;
   }
   const Condition condition = Conditions( layout, image, input ).any( 5 );
   try {
      if( Vorn::Filter( condition.text, layout ).matches( image ) != condition.holds ) {
         found( "another answer to " + condition.text );
      }
   } catch( const Vorn::Error& error ) {
      found( "refused: " + condition.text + ": " + error.message() );
   }
   return 0;
}
