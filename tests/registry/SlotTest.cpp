// The virtual slots of all classes, in their order, and the bodies that no class replaces.
#include "support/Assertions.h"

#include <Hardware/Registry.h>
#include <Hardware/TcamActionTable.h>
#include <Kelvar/BcmAsicBase.h>

#include <gtest/gtest.h>

#include <bit>

namespace {

using Kelvar::AsicBase;
using Kelvar::BcmAsicBase;
using Testing::failureOf;

// The slot of a virtual function, as a pointer to it says; the destructor takes slots 0 and 1.
template<class Function>
std::ptrdiff_t slotOf( Function function ) {
   struct Pointer {
      std::ptrdiff_t offsetPlusOne;
      std::ptrdiff_t adjustment;
   };
   const auto pointer = std::bit_cast<Pointer>( function );
#ifdef __aarch64__
   EXPECT_EQ( pointer.adjustment, 1 ) << "not a virtual function"; // the mark is here
#else
   EXPECT_EQ( pointer.offsetPlusOne % 8, 1 ) << "not a virtual function";
   EXPECT_EQ( pointer.adjustment, 0 );
#endif
   return pointer.offsetPlusOne / 8;
}

// Calls a slot of a view directly, as code compiled against other headers would.
template<class Result, class... Arguments>
Result callSlot( const AsicBase& view, int slot, Arguments... arguments ) {
   using Function = Result ( * )( const AsicBase*, Arguments... );
   const auto* const table = *reinterpret_cast<void* const* const*>( &view );
   return reinterpret_cast<Function>( table[slot] )( &view, arguments... );
}

// One view of each class.
std::vector<std::shared_ptr<AsicBase>> oneViewOfEach() {
   std::vector<std::shared_ptr<AsicBase>> views;
   for( const std::string_view name : Hardware::classNames() ) {
      for( unsigned chipType = 0; chipType < 256; ++chipType ) {
         const auto chip = static_cast<Hardware::ChipType>( chipType );
         if( Hardware::chipTypeVariantValid( name, chip, 0 ) ) {
            views.push_back( Hardware::stringObj( name, chip, 0 ) );
            break;
         }
      }
   }
   EXPECT_EQ( views.size(), Hardware::classNames().size() );
   return views;
}

TEST( Slots, StandInTheirOrder ) {
   EXPECT_EQ( slotOf( &AsicBase::setField64 ), 2 );
   EXPECT_EQ( slotOf( &AsicBase::stringField ), 3 );
   EXPECT_EQ( slotOf( &AsicBase::stringFieldIs ), 4 );
   EXPECT_EQ( slotOf( &AsicBase::fieldWidth ), 5 );
   EXPECT_EQ( slotOf( &AsicBase::fieldOffset ), 6 );
   EXPECT_EQ( slotOf( &AsicBase::isFieldValid ), 7 );
   EXPECT_EQ( slotOf( &AsicBase::width ), 8 );
   EXPECT_EQ( slotOf( &AsicBase::entries ), 9 );
   EXPECT_EQ( slotOf( &AsicBase::maxIdentifier ), 10 );
   EXPECT_EQ( slotOf( &AsicBase::fieldCount ), 11 );
   EXPECT_EQ( slotOf( &AsicBase::isTable ), 12 );
   EXPECT_EQ( slotOf( &AsicBase::allFieldsMask ), 13 );
   EXPECT_EQ( slotOf( &AsicBase::sdkDefinedId ), 14 );
   EXPECT_EQ( slotOf( &AsicBase::instanceCount ), 15 );
   EXPECT_EQ( slotOf( &AsicBase::tableVariantCount ), 16 );
   EXPECT_EQ( slotOf( &AsicBase::compareTo ), 17 );
   EXPECT_EQ( slotOf( &AsicBase::getSchanAddress ), 18 );
   EXPECT_EQ( slotOf( &BcmAsicBase::hasMultipleMem ), 19 );
   EXPECT_EQ( slotOf( &BcmAsicBase::groupId ), 20 );
   EXPECT_EQ( slotOf( &BcmAsicBase::numGroups ), 21 );
   EXPECT_EQ( slotOf( &BcmAsicBase::groupInfo ), 22 );
   EXPECT_EQ( slotOf( &BcmAsicBase::memInfo ), 23 );
}

TEST( Slots, OfEachClassHoldItsOperations ) {
   for( const auto& view : oneViewOfEach() ) {
      EXPECT_EQ( callSlot<U16>( *view, 8 ), view->width() );
      EXPECT_EQ( callSlot<U16>( *view, 11 ), view->fieldCount() );
      EXPECT_EQ( callSlot<bool>( *view, 12 ), view->isTable() );
      EXPECT_EQ( callSlot<U16>( *view, 15 ), view->instanceCount() );
      EXPECT_FALSE( callSlot<bool>( *view, 7, U32{ 46 } ) );
      if( view->isTable() ) {
         EXPECT_EQ( callSlot<U32>( *view, 9 ), view->entries() );
         EXPECT_EQ( callSlot<U32>( *view, 16, U32{ view->chipType() }, U8{ 0 } ),
                    view->tableVariantCount( view->chipType(), 0 ) );
      } else {
         EXPECT_EQ( callSlot<U32>( *view, 10 ), view->maxIdentifier() );
      }
   }
}

TEST( Slots, OfACallersBufferAreThoseOfItsOwner ) {
   U8 buffer[8] = {};
   const Hardware::TcamActionTable view( Hardware::BCM88650_B0, buffer, 8, false, 0 );
   const Hardware::TcamActionTable::WithStorage owner( Hardware::BCM88650_B0, 0 );
   const auto* const ofView = *reinterpret_cast<void* const* const*>( &view );
   const auto* const ofOwner = *reinterpret_cast<void* const* const*>( &owner );
   EXPECT_NE( ofView, ofOwner );
   // All but the destructor.
   for( int slot = 2; slot <= 23; ++slot ) {
      EXPECT_EQ( ofView[slot], ofOwner[slot] ) << slot;
   }
}

void expectDefault( const std::function<void()>& action, const std::string& expression,
                    const std::string& file, const std::string& function ) {
   const auto failure = failureOf( action );
   ASSERT_TRUE( failure ) << function;
   EXPECT_EQ( failure->expression, expression );
   EXPECT_EQ( failure->file, file );
   EXPECT_EQ( failure->function, function );
   EXPECT_FALSE( failure->message );
}

TEST( Defaults, AreReplacedByNoClass ) {
   for( const auto& view : oneViewOfEach() ) {
      expectDefault( [&] { view->sdkDefinedId(); }, "false", "AsicBase.h",
                     "virtual S32 Kelvar::AsicBase::sdkDefinedId() const" );
      expectDefault( [&] { view->compareTo( nullptr, 0 ); }, "0", "AsicBase.h",
                     "virtual bool Kelvar::AsicBase::compareTo(const void*, U16) const" );
      const auto* const bcm = dynamic_cast<const BcmAsicBase*>( view.get() );
      ASSERT_NE( bcm, nullptr );
      U32 number = 0;
      U8 small = 0;
      expectDefault( [&] { bcm->hasMultipleMem(); }, "0", "BcmAsicBase.h",
                     "virtual bool Kelvar::BcmAsicBase::hasMultipleMem() const" );
      expectDefault( [&] { bcm->groupId( 0 ); }, "0", "BcmAsicBase.h",
                     "virtual U32 Kelvar::BcmAsicBase::groupId(U32) const" );
      expectDefault( [&] { bcm->numGroups(); }, "0", "BcmAsicBase.h",
                     "virtual U32 Kelvar::BcmAsicBase::numGroups() const" );
      expectDefault( [&] { bcm->groupInfo( 0, number, number, small ); }, "0", "BcmAsicBase.h",
                     "virtual bool Kelvar::BcmAsicBase::groupInfo(U32, U32&, U32&, U8&) const" );
      expectDefault( [&] { bcm->memInfo( 0, 0, number, number, number, number, number ); }, "0",
                     "BcmAsicBase.h",
                     "virtual bool Kelvar::BcmAsicBase::memInfo(U32, U32, U32&, U32&, U32&, U32&, "
                     "U32&) const" );
   }
}

TEST( Defaults, OfAClassThatDoesNotReplaceThem ) {
   for( const auto& view : oneViewOfEach() ) {
      if( view->isTable() ) {
         expectDefault( [&] { view->maxIdentifier(); },
                        "false && \"maxIdentifier invalid for this class\"", "AsicBase.h",
                        "virtual U32 Kelvar::AsicBase::maxIdentifier() const" );
      } else {
         expectDefault( [&] { view->entries(); }, "false && \"entries invalid for this class\"",
                        "AsicBase.h", "virtual U32 Kelvar::AsicBase::entries() const" );
         expectDefault( [&] { view->tableVariantCount( 2, 0 ); }, "false", "AsicBase.h",
                        "virtual U32 Kelvar::AsicBase::tableVariantCount(U32, U8) const" );
      }
   }
}

TEST( Death, AFailedAssertionEndsTheProcess ) {
   EXPECT_DEATH( Hardware::TcamActionTable::width( 9, 0 ), "VornTunnelMetaInfo:[0-9]+: static U16 "
                                                           "Hardware::TcamActionTable::width" );
   EXPECT_DEATH( Hardware::stringObj( "tcamactiontable", Hardware::BCM88650_B0, 0 ),
                 "invalid name given: tcamactiontable" );
   EXPECT_DEATH( Hardware::TcamActionTable::WithStorage( static_cast<Hardware::ChipType>( 9 ), 0 ),
                 "not in metainfo for TcamActionTable!" );
}

} // namespace
