// A view whose members tests can set directly.
#pragma once

#include <Kelvar/Types.h>

namespace Testing {

// Every operation reads the members afresh.
template<class View>
struct Probe : View {
   using View::View;

   void bufferIs( U8* buf, U16 len ) {
      this->buf_ = buf;
      this->len_ = len;
   }
   void pairIs( U8 chipType, U8 variant ) {
      this->chipType_ = chipType;
      this->variant_ = variant;
   }
};

} // namespace Testing
