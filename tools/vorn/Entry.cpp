// One entry image that is being composed, field by field.
#include "Entry.h"

#include "Error.h"
#include "Text.h"

#include <Kelvar/BitBuf.h>

#include <string>

namespace Vorn {

void Entry::reset( const Plan& plan ) {
   plan_ = &plan;
   bytes_.assign( plan.blank().begin(), plan.blank().end() );
   isSet_.assign( plan.fields().size(), false );
}

void Entry::set( std::string_view name, const Value& value, std::string_view given ) {
   const auto position = plan_->settable( name );
   const Plan::Field& field = plan_->fields()[position];
   if( isSet_[position] ) {
      throw Error( "field " + std::string( name ) + " is given twice" );
   }
   if( value.bits > field.width ) {
      const auto text = given.empty() ? std::to_string( value.words[0] ) : shown( given );
      throw Error( "value " + text + " of field " + std::string( name ) + " is too large; its " +
                   std::to_string( field.width ) + " bits in " + plan_->pairText() +
                   " hold at most " + largestOf( field.width ) );
   }
   isSet_[position] = true;
   setBuf( bytes_.data(), static_cast<int>( bytes_.size() ), value.bytes(),
           static_cast<int>( sizeof( value.words ) ), field.width, field.offset );
}

} // namespace Vorn
