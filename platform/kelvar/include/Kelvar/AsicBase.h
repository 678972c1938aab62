// The root of all views: the entry image of a view, and its virtual operations.
#pragma once

#include <Kelvar/Types.h>

#include <Oru/String.h>

namespace Kelvar {

// Ends the process through the C library's __assert_fail, in every build type.
[[noreturn]] KELVAR_API void assertFail( const char* expression, const char* file, unsigned line,
                                         const char* function );

// A view over one entry image, with the operations of all views; those that a class lacks assert.
class KELVAR_API AsicBase {
public:
   AsicBase( const AsicBase& ) = delete;
   AsicBase& operator=( const AsicBase& ) = delete;

   virtual ~AsicBase() {}

   virtual void setField64( U32 fieldId, U64 value ) = 0;
   virtual U64 stringField( const Oru::String& fieldName, U16 index ) const = 0;
   virtual void stringFieldIs( const Oru::String& fieldName, const U64& value ) = 0;
   virtual U16 fieldWidth( U32 fieldId ) const = 0;
   virtual U16 fieldOffset( U32 fieldId ) const = 0;
   virtual bool isFieldValid( U32 fieldId ) const = 0;
   virtual U16 width() const = 0;
   virtual U32 entries() const {
      assertFail( "false && \"entries invalid for this class\"", "AsicBase.h", __LINE__,
                  "virtual U32 Kelvar::AsicBase::entries() const" );
   }
   virtual U32 maxIdentifier() const {
      assertFail( "false && \"maxIdentifier invalid for this class\"", "AsicBase.h", __LINE__,
                  "virtual U32 Kelvar::AsicBase::maxIdentifier() const" );
   }
   virtual U16 fieldCount() const = 0;
   virtual bool isTable() const = 0;
   virtual Raw4096 allFieldsMask() const = 0;
   virtual S32 sdkDefinedId() const {
      assertFail( "false", "AsicBase.h", __LINE__,
                  "virtual S32 Kelvar::AsicBase::sdkDefinedId() const" );
   }
   virtual U16 instanceCount() const = 0;
   virtual U32 tableVariantCount( U32, U8 ) const {
      assertFail( "false", "AsicBase.h", __LINE__,
                  "virtual U32 Kelvar::AsicBase::tableVariantCount(U32, U8) const" );
   }
   virtual bool compareTo( const void*, U16 ) const {
      assertFail( "0", "AsicBase.h", __LINE__,
                  "virtual bool Kelvar::AsicBase::compareTo(const void*, U16) const" );
   }
   virtual bool getSchanAddress( U32& schanAddress, U8& accessType, U8& destBlock, U16 identifier,
                                 U32 tableEntry, U16 arrayIndex ) const = 0;

   // The entry image, its length in bytes, and the pair the view was made for.
   U8* buf() const { return buf_; }
   U16 len() const { return len_; }
   U8 chipType() const { return chipType_; }
   U8 variant() const { return variant_; }

protected:
   // Keeps the low 16 bits of `len`. Ignores the bool and the last U8.
   AsicBase( U8 chipType, U8* buf, U32 len, bool existingEntry, U8 variant, U8 );

   U8* buf_;
   U8 chipType_;
   U8 variant_;
   U16 len_;
};

} // namespace Kelvar
