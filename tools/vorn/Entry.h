// One entry image that is being composed, field by field.
#pragma once

#include "Plan.h"
#include "Values.h"

#include <Kelvar/Types.h>

#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

class Entry {
public:
   // Begins anew with a fresh entry of the plan's pair. The plan must outlive the use of it.
   void reset( const Plan& plan );

   // Fields are written in the order of the calls, so where two overlap the later one wins. A field
   // that cannot be set or is already set and a value too large for it are Errors. `given` is the
   // text the value was read from, for the message; without it, the value fits into 64 bits.
   void set( std::string_view field, const Value& value, std::string_view given = {} );

   // The image as long as the hardware has it.
   std::span<const U8> image() const { return std::span( bytes_ ).first( plan_->imageBytes() ); }

private:
   const Plan* plan_ = nullptr;
   std::vector<U8> bytes_;
   std::vector<bool> isSet_; // by position in the plan's fields
};

} // namespace Vorn
