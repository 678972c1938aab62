// What holds of all classes together, over every name of the registry and every pair of its class.
#include "support/Classes.h"
#include "support/Numbers.h"

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>
#include <Hardware/Tables.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace {

constexpr Hardware::ChipType chip( unsigned number ) {
   return static_cast<Hardware::ChipType>( number );
}

struct Class : Testing::StatedClass {
   // Found in the class itself.
   bool foundDiscriminator;
   const std::type_info& owner;
   bool ( *chipTypeVariantValid )( Hardware::ChipType, U8 );
};

// The discriminator of class X is X::isX.
#define FOUND_DISCRIMINATOR( Name )                                                                \
   []<class V>( V* ) {                                                                             \
      return requires( const U8* buf ) { V::is##Name( Hardware::ChipType{}, buf, U16{}, U8{} ); }; \
   }( static_cast<Hardware::Name*>( nullptr ) )
#define CLASS( Name, Entry, ... )                                                                  \
   [] {                                                                                            \
      static_assert( std::is_same_v<decltype( &Hardware::Name::getAllFields ),                     \
                                    Entry ( Hardware::Name::* )() const> );                        \
      return Class{ { #Name, __VA_ARGS__ },                                                        \
                    FOUND_DISCRIMINATOR( Name ),                                                   \
                    typeid( Hardware::Name::WithStorage ),                                         \
                    &Hardware::Name::chipTypeVariantValid };                                       \
   }(),

const std::vector<Class>& classes() {
   static const std::vector<Class> classes = {
#include "support/Classes.def"
   };
   return classes;
}
#undef FOUND_DISCRIMINATOR

struct Pair {
   std::string_view name;
   Hardware::ChipType chipType;
   U8 variant;

   std::shared_ptr<Kelvar::AsicBase> view() const {
      return Hardware::stringObj( name, chipType, variant );
   }
};

std::ostream& operator<<( std::ostream& out, const Pair& pair ) {
   return out << pair.name << " (" << unsigned{ pair.chipType } << ", " << unsigned{ pair.variant }
              << ")";
}

// Every valid pair of every class; of a chip type without variants, a few of them.
const std::vector<Pair>& pairs() {
   static const std::vector<Pair> pairs = [] {
      std::vector<Pair> found;
      for( const std::string_view name : Hardware::classNames() ) {
         for( unsigned chipType = 0; chipType < 256; ++chipType ) {
            for( unsigned variant = 0; variant < 256; ++variant ) {
               const auto number = static_cast<U8>( variant );
               const auto info = Hardware::pairInfo( name, chipType, number );
               if( info && ( info->hasVariants || variant % 85 < 2 ) ) {
                  found.push_back( { name, chip( chipType ), number } );
               }
            }
         }
      }
      return found;
   }();
   return pairs;
}

TEST( AllClasses, AreThoseOfTheRegistry ) {
   std::vector<std::string_view> names;
   for( const Class& one : classes() ) {
      names.push_back( one.name );
   }
   EXPECT_EQ( names, Hardware::classNames() );
}

TEST( AllClasses, RegistryPlacesFieldsWhereTheViewsDo ) {
   for( const Pair& pair : pairs() ) {
      const auto view = pair.view();
      std::vector<Hardware::PairField> fields( view->fieldCount() );
      ASSERT_EQ( Hardware::pairFields( pair.name, pair.chipType, pair.variant, fields.data(),
                                       fields.size() ),
                 fields.size() );
      auto field = fields.begin();
      for( const Hardware::FieldInfo& declared : Hardware::classFields( pair.name ) ) {
         if( !view->isFieldValid( declared.identifier ) ) {
            continue;
         }
         ASSERT_NE( field, fields.end() ) << pair;
         EXPECT_EQ( field->identifier, declared.identifier ) << pair;
         EXPECT_EQ( field->name, declared.name ) << pair;
         EXPECT_EQ( field->readOnly, declared.readOnly ) << pair;
         EXPECT_EQ( field->offset, view->fieldOffset( declared.identifier ) ) << pair;
         EXPECT_EQ( field->width, view->fieldWidth( declared.identifier ) ) << pair;
         EXPECT_EQ( field->constant, declared.readOnly ? view->stringField( declared.name, 0 ) : 0 )
            << pair;
         ++field;
      }
      EXPECT_EQ( field, fields.end() ) << pair;
   }
}

TEST( AllClasses, RegistryReachesTheClassOfTheName ) {
   for( const Class& one : classes() ) {
      for( unsigned chipType = 0; chipType < 256; ++chipType ) {
         for( unsigned variant = 0; variant < 256; ++variant ) {
            const auto number = static_cast<U8>( variant );
            ASSERT_EQ( Hardware::chipTypeVariantValid( one.name, chip( chipType ), number ),
                       one.chipTypeVariantValid( chip( chipType ), number ) )
               << one.name << " (" << chipType << ", " << variant << ")";
         }
      }
   }
   for( const Pair& pair : pairs() ) {
      const auto one = std::find_if( classes().begin(), classes().end(), [&]( const Class& other ) {
         return other.name == pair.name;
      } );
      ASSERT_NE( one, classes().end() );
      const auto view = pair.view();
      const Kelvar::AsicBase& object = *view;
      EXPECT_TRUE( typeid( object ) == one->owner ) << pair;
      EXPECT_EQ( view->len(), one->storageBytes ) << pair;
      EXPECT_EQ( view->chipType(), pair.chipType ) << pair;
      EXPECT_EQ( view->variant(), pair.variant ) << pair;
   }
}

TEST( AllClasses, HaveTheirDiscriminators ) {
   for( const Class& one : classes() ) {
      EXPECT_EQ( one.foundDiscriminator, one.hasDiscriminator ) << one.name;
   }
}

TEST( AllClasses, HaveTheirFieldsAndPairs ) {
   for( const Class& one : classes() ) {
      EXPECT_EQ( Hardware::classFields( one.name ).size(), one.fields ) << one.name;
      const std::set<unsigned> chips = Testing::numbersIn( one.chips );
      unsigned count = 0;
      for( unsigned chipType = 0; chipType < 256; ++chipType ) {
         unsigned variants = 0;
         for( unsigned variant = 0; variant < 256; ++variant ) {
            const auto info =
               Hardware::pairInfo( one.name, chip( chipType ), static_cast<U8>( variant ) );
            variants += info && ( info->hasVariants || variant == 0 );
         }
         EXPECT_EQ( variants != 0, chips.count( chipType ) != 0 ) << one.name << " " << chipType;
         count += variants;
      }
      EXPECT_EQ( count, one.pairs ) << one.name;
   }
}

TEST( AllClasses, FieldNameHasOneIdentifierThroughoutAndTheReverse ) {
   std::map<std::string_view, U32> identifiers;
   std::map<U32, std::string_view> names;
   for( const std::string_view name : Hardware::classNames() ) {
      std::set<U32> own;
      for( const auto& field : Hardware::classFields( name ) ) {
         EXPECT_EQ( identifiers.emplace( field.name, field.identifier ).first->second,
                    field.identifier )
            << name << " " << field.name;
         EXPECT_EQ( names.emplace( field.identifier, field.name ).first->second, field.name )
            << name << " " << field.identifier;
         EXPECT_TRUE( own.insert( field.identifier ).second ) << name << " " << field.name;
      }
   }
   // Every row of the catalogue is a field of some class, and no class has another field.
   EXPECT_EQ( names.size(), Hardware::fieldCatalogue().size() );
   for( const auto& row : Hardware::fieldCatalogue() ) {
      ASSERT_EQ( names.count( row.identifier ), 1u ) << row.name;
      EXPECT_EQ( names[row.identifier], row.name );
   }
}

} // namespace
