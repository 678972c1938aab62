// The walks over classes and fields that the headers offer.
#include "support/Classes.h"

#include <Hardware/Registry.h>
#include <Hardware/Tables.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Hardware::LifTable;

// In a constant expression too.
constexpr unsigned fieldsOf( bool readOnly, bool wide ) {
   unsigned count = 0;
   LifTable::forEachField(
      [&]( auto field ) { count += field.readOnly == readOnly && field.wide == wide; } );
   return count;
}
static_assert( fieldsOf( false, false ) == 81 );
static_assert( fieldsOf( false, true ) == 1 );
static_assert( fieldsOf( true, false ) == 1 );

TEST( ForEachField, VisitsWhatTheRegistryKnows ) {
   const auto names = Hardware::classNames();
   auto name = names.begin();
   unsigned fields = 0;
   Hardware::forEachClass( [&]( auto each ) {
      using View = typename decltype( each )::View;
      ASSERT_NE( name, names.end() );
      EXPECT_EQ( each.name, *name++ );
      const auto known = Hardware::classFields( each.name );
      auto info = known.begin();
      View::forEachField( [&]( auto field ) {
         using Field = decltype( field );
         static_assert( std::is_same_v<typename Field::View, View> );
         ASSERT_NE( info, known.end() );
         EXPECT_EQ( field.name, info->name );
         EXPECT_EQ( field.identifier, info->identifier );
         EXPECT_EQ( 8 * sizeof( typename Field::Value ), info->valueBits );
         EXPECT_EQ( field.readOnly, info->readOnly );
         EXPECT_EQ( field.wide, info->valueBits > 64 );
         ++info;
         ++fields;
      } );
      EXPECT_EQ( info, known.end() ) << each.name;
   } );
   EXPECT_EQ( name, names.end() );
   EXPECT_EQ( fields, Testing::fieldCount );
}

TEST( ForEachField, GivesTheAccessors ) {
   LifTable::WithStorage lif( Hardware::BCM88690_B0, 0 );
   unsigned valid = 0;
   LifTable::forEachField( [&]( auto field ) {
      EXPECT_EQ( field.valid( lif ), lif.isFieldValid( field.identifier ) ) << field.name;
      if( field.valid( lif ) ) {
         EXPECT_EQ( field.offset( lif ), lif.fieldOffset( field.identifier ) ) << field.name;
         EXPECT_EQ( field.len( lif ), lif.fieldWidth( field.identifier ) ) << field.name;
         ++valid;
      }
   } );
   EXPECT_EQ( valid, lif.fieldCount() );

   using Vsi = Hardware::Fields::LifTable::vsi;
   static_assert( std::is_same_v<Vsi::Value, U32> && Vsi::name == "vsi" );
   Vsi::mask( lif );
   EXPECT_EQ( lif.vsi(), 0x7fffu );
   Vsi::set( lif, 2000 );
   EXPECT_EQ( lif.vsi(), 2000u );
   EXPECT_EQ( Vsi::get( lif ), 2000u );
   EXPECT_EQ( Vsi::offset( lif ), 1 );
}

} // namespace
