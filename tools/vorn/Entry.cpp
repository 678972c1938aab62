// One entry image that is being composed, field by field.
#include "Entry.h"

#include "Error.h"
#include "Text.h"

#include <Kelvar/BitBuf.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace Vorn {

namespace {

void require( bool isRight, const std::string& said, const std::string& wanted ) {
   if( !isRight ) {
      throw Error( "the image is one of " + said + ", not of " + wanted );
   }
}

// The first tag field that differs from the pair's own tag, if any does.
std::optional<Plan::TagField> wrongTag( const Plan& plan, std::span<const U8> image ) {
   for( const auto& tag : plan.tag() ) {
      if( valueIn( image, *tag.field ).words[0] != tag.value ) {
         return tag;
      }
   }
   return std::nullopt;
}

// "; did you mean variant 3?", if the tag is that of another variant.
std::string ownerOf( const Plan& plan, std::span<const U8> image ) {
   const auto pair = variantsOn( plan.table(), plan.chip().number );
   for( const U32 variant : pair->variants ) {
      const Plan other( plan.table(), plan.chip(), variant );
      if( other.imageBytes() == image.size() && !wrongTag( other, image ) ) {
         return "; did you mean variant " + std::to_string( variant ) + '?';
      }
   }
   return {};
}

} // namespace

void requireChip( const Chip& chip, const Image& image ) {
   if( image.chip.isGiven ) {
      const Chip& said = chipOf( image.chip.text );
      require( said.number == chip.number, said.name, chip.name );
   }
}

void requirePair( const Plan& plan, const Image& image ) {
   if( image.table.isGiven ) {
      require( image.table.text == plan.table(), shown( image.table.text ),
               std::string( plan.table() ) );
   }
   requireChip( plan.chip(), image );
   const auto variants = variantsOn( plan.table(), plan.chip().number );
   if( image.variant.isGiven && !variants->any ) {
      const U64 variant = parseIndex( image.variant.text, "variant", 0xff );
      require( variant == plan.variant(), "variant " + std::to_string( variant ),
               "variant " + std::to_string( plan.variant() ) );
   }
}

Value valueIn( std::span<const U8> image, const Plan::Field& field ) {
   Value value;
   getBuf( image.data(), static_cast<int>( image.size() ), value.bytes(),
           static_cast<int>( sizeof( value.words ) ), field.width, field.offset );
   value.measure();
   return value;
}

void Entry::reset( const Plan& plan ) {
   plan_ = &plan;
   bytes_.assign( plan.blank().begin(), plan.blank().end() );
   isSet_.assign( plan.fields().size(), false );
}

void Entry::reset( const Plan& plan, const Image& image ) {
   requirePair( plan, image );
   if( image.bytes.size() != plan.imageBytes() ) {
      throw Error( "the image has " + std::to_string( image.bytes.size() ) +
                   " bytes; an entry of " + plan.pairText() + " has " +
                   std::to_string( plan.imageBytes() ) );
   }
   if( const auto wrong = wrongTag( plan, image.bytes ) ) {
      throw Error( "the image is not one of " + plan.pairText() + ": its tag " +
                   std::string( wrong->field->name ) + " is " +
                   hexOf( valueIn( image.bytes, *wrong->field ) ) + ", not " +
                   hexOf( wrong->value ) + ownerOf( plan, image.bytes ) );
   }
   reset( plan );
   std::copy( image.bytes.begin(), image.bytes.end(), bytes_.begin() );
}

std::size_t Entry::open( std::string_view field ) {
   const auto position = plan_->settable( field );
   if( isSet_[position] ) {
      throw Error( "field " + std::string( field ) + " is given twice" );
   }
   isSet_[position] = true;
   return position;
}

void Entry::set( std::size_t position, const Value& value, std::string_view given ) {
   const Plan::Field& field = plan_->fields()[position];
   if( value.bits > field.width ) {
      const auto text = given.empty() ? std::to_string( value.words[0] ) : shown( given );
      throw Error( "value " + text + " of field " + std::string( field.name ) +
                   " is too large; its " + std::to_string( field.width ) + " bits in " +
                   plan_->pairText() + " hold at most " + largestOf( field.width ) );
   }
   write( field, value.bytes() );
}

void Entry::fill( std::size_t position ) {
   static constexpr auto ones = [] {
      std::array<U8, Value::maxBits / 8> bytes;
      bytes.fill( 0xff );
      return bytes;
   }();
   write( plan_->fields()[position], ones.data() );
}

void Entry::write( const Plan::Field& field, const U8* value ) {
   setBuf( bytes_.data(), static_cast<int>( bytes_.size() ), value, Value::maxBits / 8, field.width,
           field.offset );
}

} // namespace Vorn
