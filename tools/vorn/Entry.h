// One entry image that is being composed, field by field.
#pragma once

#include "Chips.h"
#include "Images.h"
#include "Plan.h"
#include "Values.h"

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

// That the pair which stands with the image, or the part of it that does, is the plan's; else an
// Error. And the same of the chip type alone.
void requirePair( const Plan& plan, const Image& image );
void requireChip( const Chip& chip, const Image& image );

// What the field holds in an image of its pair, which must reach to the field's end.
Value valueIn( std::span<const U8> image, const Plan::Field& field );

class Entry {
public:
   // Begins anew with a fresh entry of the plan's pair. The plan must outlive the use of it.
   void reset( const Plan& plan );

   // Begins anew with an existing image. A wrong length, a wrong tag, and another pair that stands
   // with it are Errors.
   void reset( const Plan& plan, const Image& image );

   // The position of the named field in the plan, which is to be set now. A field that cannot be
   // set, or that was already, is an Error.
   std::size_t open( std::string_view field );

   // Fields are written in the order of the calls, so where two overlap the later one wins. A value
   // too large for the field is an Error. `given` is the text it was read from, for the message;
   // without it, the value fits into 64 bits.
   void set( std::size_t position, const Value& value, std::string_view given = {} );

   // Sets all bits of the field.
   void fill( std::size_t position );

   // The image as long as the hardware has it.
   std::span<const U8> image() const { return std::span( bytes_ ).first( plan_->imageBytes() ); }

private:
   void write( const Plan::Field& field, const U8* value );

   const Plan* plan_ = nullptr;
   std::vector<U8> bytes_;
   std::vector<bool> isSet_; // by position
};

} // namespace Vorn
