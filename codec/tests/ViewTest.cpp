// Fields of views that are known as `Kelvar::AsicBase` alone, against the views' own accessors.
#include "Pairs.h"

#include "support/Bits.h"
#include "support/Classes.h"
#include "support/Traces.h"

#include <Vorn/View.h>

#include <Hardware/FieldId.h>
#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>
#include <Hardware/Tables.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

using Testing::errorOf;
using Vorn::setValue;
using Vorn::Value;
using Vorn::valueOf;

template<class Number>
Value valueFrom( const Number& number ) {
   Value::Words words{};
   static_assert( sizeof number <= sizeof words );
   std::memcpy( words.data(), &number, sizeof number );
   return Value( words );
}

TEST( View, GivesWhatItsAccessorsGive ) {
   std::mt19937 random( 1 );
   unsigned pairs = 0;
   unsigned wide = 0;
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      SCOPED_TRACE( layout.pairText() );
      const auto made = Hardware::stringObj( Oru::String( std::string( layout.table() ).c_str() ),
                                             layout.chip().type(), layout.variant() );
      Kelvar::AsicBase& view = *made;
      ASSERT_EQ( Vorn::layoutOf( view ), layout );
      ++pairs;
      for( const Vorn::Field& field : layout.fields() ) {
         if( !field.readOnly ) {
            Value::Words words{};
            for( unsigned bit = 0; bit < field.width; ++bit ) {
               words[bit / 64] |= U64( random() & 1 ) << bit % 64;
            }
            setValue( view, field.name, Value( words ) );
            EXPECT_EQ( valueOf( view, field.identifier ), Value( words ) ) << field.name;
         }
      }
      Hardware::forEachClass( [&]( auto each ) {
         using View = typename decltype( each )::View;
         const auto* const typed = dynamic_cast<const View*>( &view );
         if( typed == nullptr ) {
            return;
         }
         View::forEachField( [&]( auto field ) {
            if( field.valid( *typed ) ) {
               wide += field.wide;
               const Value held = valueFrom( field.get( *typed ) );
               EXPECT_EQ( valueOf( view, field.name ), held ) << field.name;
               EXPECT_EQ( valueOf( view, field.identifier ), held ) << field.name;
            }
         } );
      } );
   }
   EXPECT_EQ( pairs, Testing::pairCount );
   EXPECT_GT( wide, 100u );
}

// What a program may derive from a view is one.
class Named : public Hardware::LifTable::WithStorage {
public:
   Named() : WithStorage( Hardware::BCM88690_B0, 3 ) {}
};

TEST( View, IsFoundByAnyOfItsTypes ) {
   U8 entry[80] = {};
   const Hardware::LifTable over( Hardware::BCM88690_B0, entry, sizeof entry, false, 3 );
   const Hardware::LifTable::WithStorage own( Hardware::BCM88690_B0, 3 );
   const Named named;
   EXPECT_EQ( Vorn::layoutOf( over ).pairText(), "LifTable on BCM88690_B0 variant 3" );
   EXPECT_EQ( &Vorn::layoutOf( over ), &Vorn::layoutOf( over ) );
   EXPECT_EQ( Vorn::layoutOf( own ), Vorn::layoutOf( over ) );
   EXPECT_EQ( Vorn::layoutOf( named ), Vorn::layoutOf( over ) );
   EXPECT_EQ( Vorn::entryOf( over ).data(), entry );
   EXPECT_EQ( Vorn::entryOf( over ).size(), 80u );
}

TEST( View, RefusesWhatItCannotTake ) {
   U8 entry[80] = {};
   Hardware::LifTable lif( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
   setValue( lif, "vsi", 2000 );
   U8 before[80];
   std::memcpy( before, entry, sizeof entry );
   EXPECT_EQ( errorOf( [&] { valueOf( lif, "vsj" ); } ),
              "no field \"vsj\" in LifTable on BCM88690_B0 variant 0; did you mean vsi?" );
   EXPECT_EQ( errorOf( [&] { valueOf( lif, 9999 ); } ),
              "no field with identifier 9999 in LifTable on BCM88690_B0 variant 0" );
   EXPECT_EQ( errorOf( [&] { setValue( lif, "vsi", 32768 ); } ),
              "value 32768 of field vsi is too large; its 15 bits in LifTable on BCM88690_B0 "
              "variant 0 hold at most 0x7fff" );
   EXPECT_EQ( errorOf( [&] { setValue( lif, "resultType", 1 ); } ),
              "field resultType of LifTable on BCM88690_B0 variant 0 is read-only: it holds the "
              "entry's tag" );

   Hardware::LifTable tooShort( Hardware::BCM88650_B0, entry, 1, false, 0 );
   EXPECT_EQ( errorOf( [&] { valueOf( tooShort, "destination" ); } ),
              "the image has 1 bytes; field destination of LifTable on BCM88650_B0 variant 0 needs "
              "3, a whole entry has 16" );
   EXPECT_EQ( errorOf( [&] { setValue( tooShort, "destination", 1 ); } ),
              "the image has 1 bytes; field destination of LifTable on BCM88650_B0 variant 0 needs "
              "3, a whole entry has 16" );
   EXPECT_EQ( std::memcmp( before, entry, sizeof entry ), 0 );
}

TEST( View, NeitherAssertsNorTraces ) {
   U8 entry[80] = {};
   Hardware::LifTable lif( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
   EXPECT_TRUE( Testing::tracesOf( 9, [&] {
                   setValue( lif, "vsi", 2000 );
                   EXPECT_EQ( valueOf( lif, "vsi" ), 2000 );
                } ).empty() );
}

} // namespace
