// The base of the 22 views: five further operations, which no view overrides.
#pragma once

#include <Kelvar/AsicBase.h>

namespace Kelvar {

class KELVAR_API BcmAsicBase : public AsicBase {
public:
   virtual bool hasMultipleMem() const {
      assertFail( "0", "BcmAsicBase.h", __LINE__,
                  "virtual bool Kelvar::BcmAsicBase::hasMultipleMem() const" );
   }
   virtual U32 groupId( U32 ) const {
      assertFail( "0", "BcmAsicBase.h", __LINE__,
                  "virtual U32 Kelvar::BcmAsicBase::groupId(U32) const" );
   }
   virtual U32 numGroups() const {
      assertFail( "0", "BcmAsicBase.h", __LINE__,
                  "virtual U32 Kelvar::BcmAsicBase::numGroups() const" );
   }
   virtual bool groupInfo( U32, U32&, U32&, U8& ) const {
      assertFail( "0", "BcmAsicBase.h", __LINE__,
                  "virtual bool Kelvar::BcmAsicBase::groupInfo(U32, U32&, U32&, U8&) const" );
   }
   virtual bool memInfo( U32, U32, U32&, U32&, U32&, U32&, U32& ) const {
      assertFail( "0", "BcmAsicBase.h", __LINE__,
                  "virtual bool Kelvar::BcmAsicBase::memInfo(U32, U32, U32&, U32&, U32&, U32&, "
                  "U32&) const" );
   }

protected:
   using AsicBase::AsicBase;
};

} // namespace Kelvar
