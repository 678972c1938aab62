// Over a platform that only declares its primitives, every access is one call of them. This program
// runs over such a build of the library, which finds the program's own primitives first.
#include "Primitives.h"
#include "support/Assertions.h"
#include "support/Classes.h"
#include "support/EveryClass.h"
#include "support/Traces.h"

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>

namespace {

using Testing::Bits;
using Testing::Call;
using Testing::callsOf;
using Testing::ClassAccessors;
using Testing::expressionOf;
using Testing::FieldAccessors;
using Testing::Image;
using Testing::lowOnes;
using Testing::Primitive;

using Calls = std::vector<Call>;
using View = std::unique_ptr<Kelvar::AsicBase>;

Call getCall( const U8* buf, unsigned len, unsigned valueLen, unsigned width, unsigned offset ) {
   return { Primitive::getBuf,
            buf,
            static_cast<int>( len ),
            static_cast<int>( valueLen ),
            static_cast<int>( width ),
            static_cast<int>( offset ),
            {},
            {} };
}

Call setCall( const U8* buf, unsigned len, unsigned valueLen, unsigned width, unsigned offset,
              const Bits& value ) {
   Call call = getCall( buf, len, valueLen, width, offset );
   call.primitive = Primitive::setBuf;
   call.given = value;
   return call;
}

// Every pair of a class; of a chip type without variants, a few variants stand for all.
template<class Act>
void forEachPair( const ClassAccessors& of, const Act& act ) {
   for( unsigned chipType = 0; chipType < 32; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto info = Hardware::pairInfo( of.name, chipType, static_cast<U8>( variant ) );
         if( info && ( info->hasVariants || variant == 0 || variant == 255 ) ) {
            SCOPED_TRACE( std::string( of.name ) + " (" + std::to_string( chipType ) + ", " +
                          std::to_string( variant ) + ")" );
            act( static_cast<Hardware::ChipType>( chipType ), static_cast<U8>( variant ) );
         }
      }
   }
}

class EveryAccess : public testing::TestWithParam<std::size_t> {
protected:
   const ClassAccessors& of = Testing::everyClass()[GetParam()];
   std::mt19937 random{ static_cast<unsigned>( GetParam() ) };

   // Calls `act` with each field of each pair, its place, and a view of that pair.
   template<class Act>
   void forEachField( const Act& act ) {
      forEachPair( of, [&]( Hardware::ChipType chipType, U8 variant ) {
         const View view = of.viewOf( chipType, variant );
         for( const FieldAccessors& field : of.fields ) {
            if( view->isFieldValid( field.identifier ) ) {
               SCOPED_TRACE( field.name );
               act( *view, field, view->fieldOffset( field.identifier ),
                    view->fieldWidth( field.identifier ) );
            }
         }
      } );
   }
};

// The least length that holds the field, and two that say that it is the view's own.
std::vector<U16> lengthsFor( unsigned offset, unsigned width ) {
   const auto bytes = static_cast<U16>( ( offset + width + 7 ) / 8 );
   return { bytes, static_cast<U16>( bytes + 3 ), 200 };
}

TEST_P( EveryAccess, IsOneCall ) {
   std::set<U32> walked;
   forEachField(
      [&]( Kelvar::AsicBase& view, const FieldAccessors& field, unsigned offset, unsigned width ) {
         walked.insert( field.identifier );
         Image image = Testing::randomImage( 200, random );
         U8* const buf = image.data();
         for( const U16 len : lengthsFor( offset, width ) ) {
            of.bufferIs( view, buf, len );

            const Calls get{ getCall( buf, len, field.valueBits / 8, width, offset ) };
            const Bits held = Testing::bitsAt( image, offset, width );
            Bits value;
            EXPECT_EQ( callsOf( [&] { value = field.get( view ); } ), get );
            EXPECT_EQ( value, held );
            U64 word = 0;
            EXPECT_EQ( callsOf( [&] { word = view.stringField( field.name, 0 ); } ), get );
            EXPECT_EQ( word, ( held & lowOnes( 64 ) ).to_ullong() );
            if( field.readOnly() ) {
               continue;
            }

            const Bits bits = Testing::randomBits( width, random );
            const Calls set{ setCall( buf, len, field.valueBits / 8, width, offset, bits ) };
            EXPECT_EQ( callsOf( [&] { field.set( view, bits ); } ), set );
            EXPECT_EQ( Testing::bitsAt( image, offset, width ), bits );
            const Calls mask{ setCall( buf, len, field.valueBits / 8, width, offset,
                                       lowOnes( width ) ) };
            EXPECT_EQ( callsOf( [&] { field.mask( view ); } ), mask );
            EXPECT_EQ( Testing::bitsAt( image, offset, width ), lowOnes( width ) );
            if( !field.wide() ) {
               const U64 number = bits.to_ullong();
               EXPECT_EQ( callsOf( [&] { view.setField64( field.identifier, number ); } ), set );
               EXPECT_EQ( callsOf( [&] { view.stringFieldIs( field.name, number ); } ), set );
            }
         }
      } );
   EXPECT_EQ( walked.size(), of.fields.size() );
}

TEST_P( EveryAccess, IsOneCallWhenTraced ) {
   forEachField( [&]( Kelvar::AsicBase& view, const FieldAccessors& field, unsigned offset,
                      unsigned width ) {
      U8 buf[200] = {};
      of.bufferIs( view, buf, sizeof buf );
      const auto traced = [&]( const auto& action ) {
         Calls calls;
         EXPECT_EQ( Testing::tracesOf( 8, [&] { calls = callsOf( action ); } ).size(), 1u );
         return calls;
      };
      EXPECT_EQ( traced( [&] { field.get( view ); } ),
                 Calls{ getCall( buf, sizeof buf, field.valueBits / 8, width, offset ) } );
      if( !field.readOnly() ) {
         EXPECT_EQ( traced( [&] { field.set( view, {} ); } ),
                    Calls{ setCall( buf, sizeof buf, field.valueBits / 8, width, offset, {} ) } );
         EXPECT_EQ( traced( [&] { field.mask( view ); } ),
                    Calls{ setCall( buf, sizeof buf, field.valueBits / 8, width, offset,
                                    lowOnes( width ) ) } );
      }
   } );
}

TEST_P( EveryAccess, IsNoCallWhereACheckFails ) {
   forEachField(
      [&]( Kelvar::AsicBase& view, const FieldAccessors& field, unsigned offset, unsigned width ) {
         const unsigned bytes = ( offset + width + 7 ) / 8;
         U8 buf[200] = {};
         const auto refused = [&]( U16 len, const auto& action ) {
            of.bufferIs( view, buf, len );
            std::string expression;
            EXPECT_EQ( callsOf( [&] { expression = expressionOf( action ); } ), Calls{} );
            return expression;
         };
         const std::string tooShort = "len_ >= " + std::to_string( bytes );
         const auto less = static_cast<U16>( bytes - 1 );
         EXPECT_EQ( refused( less, [&] { field.get( view ); } ), tooShort );
         if( field.readOnly() ) {
            return;
         }
         EXPECT_EQ( refused( less, [&] { field.mask( view ); } ), tooShort );
         // A value that is too great as well: the length comes first.
         const Bits value = ~Bits();
         EXPECT_EQ( refused( less, [&] { field.set( view, value ); } ), tooShort );
         if( field.wide() || width == 8 || width == 16 || width == 32 || width == 64 ) {
            const Bits whole = lowOnes( field.valueBits );
            of.bufferIs( view, buf, 200 );
            EXPECT_EQ( callsOf( [&] { field.set( view, value ); } ),
                       Calls{ setCall( buf, 200, field.valueBits / 8, width, offset, whole ) } );
         } else {
            const std::string bound = refused( 200, [&] { field.set( view, value ); } );
            EXPECT_EQ( bound.rfind( std::string( field.name ) + " <= 0x", 0 ), 0u ) << bound;
         }
      } );
}

TEST_P( EveryAccess, OfAWholeEntryIsOneCall ) {
   forEachPair( of, [&]( Hardware::ChipType chipType, U8 variant ) {
      const unsigned bytes = of.storageBytes;
      const auto words = static_cast<int>( bytes / 4 );
      Raw4096 mask{};
      EXPECT_EQ( callsOf( [&] { mask = of.allFieldsMask( chipType, variant ); } ).size(), 1u );
      Image wholeMask( sizeof mask ); // more bits than an entry has
      std::memcpy( wholeMask.data(), &mask, sizeof mask );
      const Bits ones = Testing::bitsAt( wholeMask, 0, 8 * bytes );
      for( Call& call : callsOf( [&] { mask = of.allFieldsMask( chipType, variant ); } ) ) {
         call.image = nullptr;
         EXPECT_EQ( call, setCall( nullptr, bytes, bytes, 8 * bytes, 0, ones ) );
      }

      const View view = of.viewOf( chipType, variant );
      Image image = Testing::randomImage( 200, random );
      for( const U16 len : { static_cast<U16>( bytes ), U16{ 200 } } ) {
         of.bufferIs( *view, image.data(), len );
         Bits entry;
         const Call expected = {
            Primitive::maskBuf, image.data(), words, words, words, 0, ones, {}
         };
         EXPECT_EQ( callsOf( [&] { entry = of.getAllFields( *view ); } ), Calls{ expected } );
         EXPECT_EQ( entry, Testing::bitsAt( image, 0, 8 * bytes ) & ones );
      }
      of.bufferIs( *view, image.data(), static_cast<U16>( bytes - 1 ) );
      EXPECT_EQ( callsOf( [&] { expressionOf( [&] { of.getAllFields( *view ); } ); } ), Calls{} );
   } );
}

// What a class stamps and verifies, in this order.
std::vector<const char*> tagFieldsOf( const std::string& name ) {
   const std::map<std::string, std::vector<const char*>> fields = {
      { "EpniIsidTable", { "vmv", "tid", "entryType", "resultType" } },
      { "EsemMgmtReq", { "vmv", "tid", "entryType", "resultType" } },
      { "IsemMgmtReq", { "tid", "entryType", "vmv" } },
      { "LifTable", { "resultType" } },
      { "OutAcBank", { "resultType" } },
   };
   const auto found = fields.find( name );
   return found == fields.end() ? std::vector<const char*>() : found->second;
}

bool hasTag( const std::string& name, unsigned chipType, unsigned variant ) {
   const bool reduced = name == "IsemMgmtReq" && ( chipType == 12 || chipType == 14 ) &&
                        ( variant == 7 || variant == 8 || variant == 19 || variant == 20 );
   return chipType >= 10 && chipType <= 16 && !reduced;
}

TEST_P( EveryAccess, OfATagIsOneCallAField ) {
   forEachPair( of, [&]( Hardware::ChipType chipType, U8 variant ) {
      std::vector<const char*> fields;
      if( hasTag( of.name, chipType, variant ) ) {
         fields = tagFieldsOf( of.name );
      }
      constexpr U16 len = 200;
      Image image( len );
      U8* const buf = image.data();
      const auto construct = [&]( U16 length, bool existingEntry ) {
         return callsOf( [&] {
            expressionOf( [&] { of.make( chipType, buf, length, existingEntry, variant ); } );
         } );
      };
      const auto ask = [&]( U16 length, bool answer ) {
         return callsOf( [&] {
            if( of.holds != nullptr ) {
               EXPECT_EQ( of.holds( chipType, buf, length, variant ), answer );
            }
         } );
      };

      const Calls stamps = construct( len, false );
      Calls expectedStamps;
      Calls reads;
      const View view = of.viewOf( chipType, variant );
      for( const char* name : fields ) {
         const auto field =
            std::find_if( of.fields.begin(), of.fields.end(), [name]( const FieldAccessors& one ) {
               return one.name == std::string( name );
            } );
         ASSERT_NE( field, of.fields.end() );
         const unsigned width = view->fieldWidth( field->identifier );
         const unsigned offset = view->fieldOffset( field->identifier );
         expectedStamps.push_back(
            setCall( buf, len, 1, width, offset, Testing::bitsAt( image, offset, width ) ) );
         reads.push_back( getCall( buf, len, 1, width, offset ) );
      }
      EXPECT_EQ( stamps, expectedStamps );
      EXPECT_EQ( construct( len, true ), reads );
      EXPECT_EQ( ask( len, true ), of.holds == nullptr ? Calls{} : reads );

      Calls owned = callsOf( [&] { Hardware::stringObj( of.name, chipType, variant ); } );
      for( std::size_t number = 0; number < owned.size(); ++number ) {
         owned[number].image = buf;
         expectedStamps[number].imageLen = of.storageBytes;
      }
      EXPECT_EQ( owned, expectedStamps );

      // The first field that differs is the last that is read.
      for( std::size_t number = 0; number < reads.size(); ++number ) {
         const auto bit = static_cast<unsigned>( reads[number].offset );
         Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
         const Calls some( reads.begin(),
                           reads.begin() + static_cast<std::ptrdiff_t>( number ) + 1 );
         EXPECT_EQ( construct( len, true ), some );
         EXPECT_EQ( ask( len, false ), some );
         Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
      }

      // A buffer that ends before the first: only verifying doesn't ask.
      if( !reads.empty() ) {
         const auto less = static_cast<U16>( ( reads[0].offset + reads[0].width + 7 ) / 8 - 1 );
         EXPECT_EQ( construct( less, false ), Calls{} );
         EXPECT_EQ( ask( less, false ), Calls{} );
         const Calls verified = construct( less, true );
         ASSERT_FALSE( verified.empty() );
         reads[0].imageLen = less;
         EXPECT_EQ( verified[0], reads[0] );
      }
   } );
}

std::string className( const testing::TestParamInfo<std::size_t>& number ) {
   return Testing::everyClass()[number.param].name;
}
INSTANTIATE_TEST_SUITE_P( OfEveryClass, EveryAccess,
                          testing::Range( std::size_t{ 0 }, Testing::classCount ), className );

} // namespace
