// Whole images from the values of their fields, and the values from an image.
#include <Vorn/Compose.h>

#include <Vorn/Error.h>

#include <algorithm>
#include <string>
#include <utility>

namespace Vorn {

namespace {

void setAll( Composer& composer, std::span<const FieldValue> values ) {
   for( const auto& [name, value] : values ) {
      if( !composer.holds( name, value ) ) {
         composer.set( composer.open( name ), value );
      }
   }
}

std::vector<U8> imageOf( const Composer& composer ) {
   return { composer.image().begin(), composer.image().end() };
}

} // namespace

std::vector<U8> compose( const Layout& layout, std::span<const FieldValue> values,
                         Overlap overlap ) {
   Composer composer( layout, overlap );
   setAll( composer, values );
   return imageOf( composer );
}

std::vector<U8> compose( const Layout& layout, std::span<const U8> from,
                         std::span<const FieldValue> values, Overlap overlap ) {
   Composer composer( layout, overlap );
   composer.reset( from );
   setAll( composer, values );
   return imageOf( composer );
}

std::vector<U8> compose( const Layout& layout, std::initializer_list<FieldValue> values,
                         Overlap overlap ) {
   return compose( layout, std::span( values.begin(), values.size() ), overlap );
}

std::vector<U8> compose( const Layout& layout, std::span<const U8> from,
                         std::initializer_list<FieldValue> values, Overlap overlap ) {
   return compose( layout, from, std::span( values.begin(), values.size() ), overlap );
}

std::vector<FieldValue> decompose( const Layout& layout, std::span<const U8> image ) {
   layout.requireFields( image );
   std::vector<FieldValue> values;
   for( const Field& field : layout.fields() ) {
      values.push_back( { field.name, layout.value( image, field ) } );
   }
   return values;
}

std::vector<FieldValue> settingsOf( const Layout& layout, std::span<const U8> image ) {
   layout.requireEntry( image );
   std::vector<const Field*> fields;
   for( const Field& field : layout.fields() ) {
      if( !field.readOnly ) {
         fields.push_back( &field );
      }
   }
   std::stable_sort( fields.begin(), fields.end(), []( const Field* left, const Field* right ) {
      return left->width < right->width;
   } );
   std::vector<U8> composed = layout.blank();
   std::erase_if( fields, [&]( const Field* field ) {
      const Value value = layout.value( image, *field );
      const bool isSaid = layout.value( composed, *field ) == value;
      layout.set( composed, *field, value );
      return isSaid;
   } );
   std::sort( fields.begin(), fields.end() ); // as they are declared
   std::vector<FieldValue> settings;
   for( const Field* const field : fields ) {
      settings.push_back( { field->name, layout.value( image, *field ) } );
   }
   return settings;
}

Composer::Composer( Layout layout, Overlap overlap )
   : layout_( std::move( layout ) ), overlap_( overlap ), blank_( layout_.blank() ),
     image_( blank_ ) {}

void Composer::reset() {
   image_ = blank_;
   set_.clear();
}

void Composer::reset( std::span<const U8> from ) {
   layout_.requireEntry( from );
   image_.assign( from.begin(), from.end() );
   set_.clear();
}

void Composer::clear() {
   std::fill( image_.begin(), image_.end(), U8( 0 ) );
   set_.clear();
}

const Field& Composer::open( std::string_view name ) {
   const Field& field = layout_.settable( name );
   if( std::find( set_.begin(), set_.end(), &field ) != set_.end() ) {
      throw Error( "field " + std::string( name ) + " is given twice" );
   }
   return field;
}

bool Composer::holds( std::string_view name, const Value& value ) const {
   if( !layout_.has( name ) ) {
      return false;
   }
   const Field& field = layout_.field( name );
   return field.readOnly && layout_.value( image_, field ) == value;
}

void Composer::set( const Field& field, const Value& value, std::string_view given ) {
   layout_.requireFits( field, value, given );
   if( overlap_ == Overlap::refused ) {
      requireAgreement( field, value );
   }
   layout_.set( image_, field, value );
   set_.push_back( &field );
}

void Composer::requireAgreement( const Field& field, const Value& value ) const {
   const auto require = [&]( const Field& other ) {
      if( !field.overlaps( other ) ) {
         return;
      }
      Field shared = field;
      shared.offset = std::max( field.offset, other.offset );
      shared.width = std::min( field.end(), other.end() ) - shared.offset;
      std::vector<U8> image = image_;
      layout_.set( image, field, value );
      const Value earlier = layout_.value( image_, shared );
      const Value later = layout_.value( image, shared );
      if( earlier != later ) {
         throw Error( "fields " + std::string( other.name ) + " and " + std::string( field.name ) +
                      " of " + layout_.pairText() + " share the bits " +
                      std::to_string( shared.offset ) + " to " +
                      std::to_string( shared.end() - 1 ) +
                      ", and their values contradict each other there: " + hexOf( earlier ) +
                      " and " + hexOf( later ) );
      }
   };
   for( const TagField& tag : layout_.tag() ) {
      require( tag.field );
   }
   for( const Field* const other : set_ ) {
      require( *other );
   }
}

} // namespace Vorn
