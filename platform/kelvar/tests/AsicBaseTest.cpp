// The base classes: what an object holds, where, the order of the slots, and the default bodies.
#include <Assertions.h>
#include <Kelvar/BcmAsicBase.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <typeinfo>

namespace {

using Kelvar::AsicBase;
using Kelvar::BcmAsicBase;

// A view with nothing of its own but what every view must bring.
class Plain : public BcmAsicBase {
public:
   Plain( U8 chipType, U8* buf, U32 len, bool existingEntry, U8 variant )
      : BcmAsicBase( chipType, buf, len, existingEntry, variant, 0 ) {}
   ~Plain() override { ++destroyed; }

   void setField64( U32, U64 ) override {}
   U64 stringField( const Oru::String&, U16 ) const override { return 3; }
   void stringFieldIs( const Oru::String&, const U64& ) override {}
   U16 fieldWidth( U32 ) const override { return 5; }
   U16 fieldOffset( U32 ) const override { return 6; }
   bool isFieldValid( U32 ) const override { return true; }
   U16 width() const override { return 8; }
   U16 fieldCount() const override { return 11; }
   bool isTable() const override { return true; }
   Raw4096 allFieldsMask() const override { return {}; }
   U16 instanceCount() const override { return 15; }
   bool getSchanAddress( U32&, U8&, U8&, U16, U32, U16 ) const override { return true; }

   static inline int destroyed = 0;

   // Where the members lie, in bytes from the start of the object.
   std::ptrdiff_t bufAt() const { return at( &buf_ ); }
   std::ptrdiff_t chipTypeAt() const { return at( &chipType_ ); }
   std::ptrdiff_t variantAt() const { return at( &variant_ ); }
   std::ptrdiff_t lenAt() const { return at( &len_ ); }

private:
   std::ptrdiff_t at( const void* member ) const {
      return static_cast<const char*>( member ) - reinterpret_cast<const char*>( this );
   }
};

TEST( AsicBase, KeepsWhatItIsGiven ) {
   U8 image[12];
   for( const bool existingEntry : { false, true } ) {
      const Plain view( 21, image, 12, existingEntry, 7 );
      EXPECT_EQ( view.buf(), image );
      EXPECT_EQ( view.len(), 12 );
      EXPECT_EQ( view.chipType(), 21 );
      EXPECT_EQ( view.variant(), 7 );
   }
}

TEST( AsicBase, KeepsTheLow16BitsOfTheLength ) {
   U8 image[1];
   EXPECT_EQ( Plain( 2, image, 65535, false, 0 ).len(), 65535 );
   EXPECT_EQ( Plain( 2, image, 65536 + 42, false, 0 ).len(), 42 );
}

TEST( AsicBase, LeavesTheImageAlone ) {
   U8 image[4] = { 1, 2, 3, 4 };
   { const Plain view( 2, image, 4, false, 0 ); }
   const U8 expected[4] = { 1, 2, 3, 4 };
   EXPECT_EQ( std::memcmp( image, expected, 4 ), 0 );
}

TEST( AsicBase, MembersInOrder ) {
   const Plain view( 2, nullptr, 0, false, 0 );
   EXPECT_EQ( view.bufAt(), 8 );
   EXPECT_EQ( view.chipTypeAt(), 16 );
   EXPECT_EQ( view.variantAt(), 17 );
   EXPECT_EQ( view.lenAt(), 18 );
   EXPECT_EQ( sizeof( AsicBase ), 24u );
   EXPECT_EQ( sizeof( BcmAsicBase ), 24u );
   EXPECT_EQ( sizeof( Plain ), 24u );
}

TEST( AsicBase, IsPolymorphic ) {
   const Plain view( 2, nullptr, 0, false, 0 );
   const AsicBase& base = view;
   EXPECT_EQ( typeid( base ), typeid( Plain ) );
   EXPECT_EQ( dynamic_cast<const BcmAsicBase*>( &base ), &view );
   EXPECT_FALSE( std::is_copy_constructible_v<Plain> );
   EXPECT_FALSE( std::is_copy_assignable_v<Plain> );
}

// The slot a pointer to a virtual member function names: the ABI stores its byte offset in the
// table of slots, plus one.
template<class Member>
long slotOf( Member member ) {
   static_assert( sizeof( member ) == 2 * sizeof( std::ptrdiff_t ) );
   std::ptrdiff_t parts[2];
   std::memcpy( parts, &member, sizeof( parts ) );
#ifdef __aarch64__
   // Its functions may begin at odd addresses, so the mark is in the other part.
   EXPECT_EQ( parts[1], 1 ) << "not virtual";
   return parts[0] / 8;
#else
   EXPECT_EQ( parts[0] % 8, 1 ) << "not virtual";
   EXPECT_EQ( parts[1], 0 );
   return ( parts[0] - 1 ) / 8;
#endif
}

// Slots 0 and 1 are the two entries of the destructor.
TEST( AsicBase, SlotsInOrder ) {
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

#ifdef __clang__
__attribute__( ( no_sanitize( "function" ) ) )
#endif
void callSlot( void* object, std::size_t slot ) {
   void ( **table )( void* );
   std::memcpy( &table, object, sizeof( table ) );
   table[slot]( object );
}

TEST( AsicBase, DestructorTakesTheFirstTwoSlots ) {
   alignas( Plain ) unsigned char storage[sizeof( Plain )];
   Plain::destroyed = 0;
   callSlot( new( storage ) Plain( 2, nullptr, 0, false, 0 ), 0 );
   EXPECT_EQ( Plain::destroyed, 1 );
   callSlot( new Plain( 2, nullptr, 0, false, 0 ), 1 ); // this one also frees the object
   EXPECT_EQ( Plain::destroyed, 2 );

   const std::unique_ptr<AsicBase> base =
      std::make_unique<Plain>( U8{ 2 }, nullptr, 0u, false, U8{ 0 } );
   EXPECT_EQ( base->width(), 8 );
}

// The default body of an operation that is meaningless for a class.
struct DefaultBody {
   void ( *call )( const Plain& view );
   const char* expression;
   const char* file;
   const char* function;
};

constexpr DefaultBody defaultBodies[] = {
   { []( const Plain& view ) { view.entries(); }, "false && \"entries invalid for this class\"",
     "AsicBase.h", "virtual U32 Kelvar::AsicBase::entries() const" },
   { []( const Plain& view ) { view.maxIdentifier(); },
     "false && \"maxIdentifier invalid for this class\"", "AsicBase.h",
     "virtual U32 Kelvar::AsicBase::maxIdentifier() const" },
   { []( const Plain& view ) { view.sdkDefinedId(); }, "false", "AsicBase.h",
     "virtual S32 Kelvar::AsicBase::sdkDefinedId() const" },
   { []( const Plain& view ) { view.tableVariantCount( 2, 0 ); }, "false", "AsicBase.h",
     "virtual U32 Kelvar::AsicBase::tableVariantCount(U32, U8) const" },
   { []( const Plain& view ) { view.compareTo( nullptr, 0 ); }, "0", "AsicBase.h",
     "virtual bool Kelvar::AsicBase::compareTo(const void*, U16) const" },
   { []( const Plain& view ) { view.hasMultipleMem(); }, "0", "BcmAsicBase.h",
     "virtual bool Kelvar::BcmAsicBase::hasMultipleMem() const" },
   { []( const Plain& view ) { view.groupId( 0 ); }, "0", "BcmAsicBase.h",
     "virtual U32 Kelvar::BcmAsicBase::groupId(U32) const" },
   { []( const Plain& view ) { view.numGroups(); }, "0", "BcmAsicBase.h",
     "virtual U32 Kelvar::BcmAsicBase::numGroups() const" },
   { []( const Plain& view ) {
       U32 word = 0;
       U8 byte = 0;
       view.groupInfo( 0, word, word, byte );
    },
     "0", "BcmAsicBase.h",
     "virtual bool Kelvar::BcmAsicBase::groupInfo(U32, U32&, U32&, U8&) const" },
   { []( const Plain& view ) {
       U32 word = 0;
       view.memInfo( 0, 0, word, word, word, word, word );
    },
     "0", "BcmAsicBase.h",
     "virtual bool Kelvar::BcmAsicBase::memInfo(U32, U32, U32&, U32&, U32&, U32&, U32&) const" },
};

TEST( AsicBase, DefaultBodiesFail ) {
   const Plain view( 2, nullptr, 0, false, 0 );
   for( const DefaultBody& body : defaultBodies ) {
      SCOPED_TRACE( body.function );
      const auto failure = Testing::failureOf( [&] { body.call( view ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, body.expression );
      EXPECT_EQ( failure->file, body.file );
      EXPECT_EQ( failure->function, body.function );
      EXPECT_GT( failure->line, 0u );
      EXPECT_FALSE( failure->message );
   }
}

TEST( AsicBase, AssertFailPassesEverythingOn ) {
   const auto failure =
      Testing::failureOf( [] { Kelvar::assertFail( "a < b", "File", 17, "f()" ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "a < b" );
   EXPECT_EQ( failure->file, "File" );
   EXPECT_EQ( failure->line, 17u );
   EXPECT_EQ( failure->function, "f()" );
}

TEST( AsicBaseDeathTest, AssertionEndsTheProcess ) {
   const Plain view( 2, nullptr, 0, false, 0 );
   EXPECT_EXIT( view.entries(), testing::KilledBySignal( SIGABRT ),
                "AsicBase.h:.*entries\\(\\) const: Assertion .*entries invalid for this class" );
}

} // namespace
