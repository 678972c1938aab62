// The entries of one pair of a table: which fields they have, and their values in images.
#include <Vorn/Layout.h>

#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <algorithm>

namespace Vorn {

namespace {

[[noreturn]] void refusePair( std::string_view table, const Chip& chip, U64 variant ) {
   const auto pairs = pairsOf( table );
   const auto found = std::find_if( pairs.begin(), pairs.end(), [&]( const ChipVariants& pair ) {
      return pair.chip == chip.number;
   } );
   if( found == pairs.end() ) {
      std::vector<U32> numbers;
      for( const ChipVariants& pair : pairs ) {
         numbers.push_back( pair.chip );
      }
      throw Error( std::string( table ) + " does not exist on " + chip.name +
                   "; allowed: " + listOfChips( numbers ) );
   }
   throw Error( std::string( table ) + " has no variant " + std::to_string( variant ) + " on " +
                chip.name + "; allowed: " + ( found->any ? "0-255" : found->text() ) );
}

bool isBefore( std::string_view left, std::string_view right ) {
   return left.size() != right.size() ? left.size() < right.size() : left < right;
}

std::string bytesText( std::size_t bytes ) {
   return "the image has " + std::to_string( bytes ) + " bytes; ";
}

// Not in line: what composes the message would slow down those that fit.
[[noreturn, gnu::noinline]] void refuseValue( const Layout& layout, const Field& field,
                                              const Value& value, std::string_view given ) {
   const auto text = !given.empty()      ? shown( given )
                     : value.bits() > 64 ? hexOf( value )
                                         : std::to_string( value.word( 0 ) );
   throw Error( "value " + text + " of field " + std::string( field.name ) + " is too large; its " +
                std::to_string( field.width ) + " bits in " + layout.pairText() + " hold at most " +
                largestOf( field.width ) );
}

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) Layout::State {
   std::string_view table;
   const Chip* chip = nullptr;
   U8 variant = 0;
   Hardware::PairInfo info{};
   std::optional<Hardware::PairAddress> address;
   std::vector<Field> fields;
   std::vector<const Field*> byName; // as isBefore() has them
   std::vector<TagField> tag;
   std::vector<U8> blank;
   U32 end = 0; // of the last field

   const Field* find( std::string_view name ) const {
      const auto found = std::lower_bound( byName.begin(), byName.end(), name,
                                           []( const Field* field, std::string_view wanted ) {
                                              return isBefore( field->name, wanted );
                                           } );
      return found != byName.end() && ( *found )->name == name ? *found : nullptr;
   }

   void takeFields();
};

void Layout::State::takeFields() {
   std::vector<Hardware::PairField> own( info.fieldCount );
   Hardware::pairFields( table, chip->number, variant, own.data(), own.size() );
   blank.resize( std::size_t( info.width ) * 4 );
   bool isStamped = false;
   for( const Hardware::PairField& field : own ) {
      fields.push_back( { field.name, field.hardwareName, field.identifier, field.offset,
                          field.width, field.readOnly } );
      end = std::max( end, fields.back().end() );
      if( field.readOnly ) {
         tag.push_back( { fields.back(), field.constant } );
         Detail::bitsAtAre( blank.data(), blank.size(), field.offset, field.width, field.constant );
         isStamped = isStamped || field.constant != 0;
      }
   }
   if( !isStamped ) {
      tag.clear();
   }
   for( const Field& field : fields ) {
      byName.push_back( &field );
   }
   std::sort( byName.begin(), byName.end(), []( const Field* left, const Field* right ) {
      return isBefore( left->name, right->name );
   } );
}

Layout::Layout( std::string_view table, const Chip& chip, U64 variant ) {
   const auto state = std::make_shared<State>();
   state->table = tableNamed( table );
   state->chip = &chip;
   state->variant = static_cast<U8>( variant );
   const auto info = variant <= 0xff
                        ? Hardware::pairInfo( state->table, chip.number, state->variant )
                        : std::nullopt;
   if( !info ) {
      refusePair( state->table, chip, variant );
   }
   state->info = *info;
   state->address = Hardware::pairAddress( state->table, chip.number, state->variant );
   state->takeFields();
   state_ = state;
}

Layout::Layout( std::string_view table, std::string_view chip, U64 variant )
   : Layout( table, chipOf( chip ), variant ) {}

Layout::Layout( std::string_view table, U64 chip, U64 variant )
   : Layout( table, chipOf( chip ), variant ) {}

std::string_view Layout::table() const { return state_->table; }
const Chip& Layout::chip() const { return *state_->chip; }
U8 Layout::variant() const { return state_->variant; }
const Hardware::PairInfo& Layout::info() const { return state_->info; }
std::size_t Layout::bytes() const { return state_->blank.size(); }
std::span<const Field> Layout::fields() const { return state_->fields; }
std::span<const TagField> Layout::tag() const { return state_->tag; }
std::vector<U8> Layout::blank() const { return state_->blank; }

std::string Layout::pairText() const {
   return std::string( table() ) + " on " + chip().name + variantText();
}

std::string Layout::variantText() const {
   return variantsOn( table(), chip().number )->variants.size() > 1
             ? " variant " + std::to_string( variant() )
             : "";
}

const Field& Layout::field( std::string_view name ) const {
   const Field* const found = state_->find( name );
   if( !found ) {
      refuseName( name, false );
   }
   return *found;
}

const Field& Layout::field( U32 identifier ) const {
   for( const Field& field : fields() ) {
      if( field.identifier == identifier ) {
         return field;
      }
   }
   throw Error( "no field with identifier " + std::to_string( identifier ) + " in " + pairText() );
}

const Field& Layout::settable( std::string_view name ) const {
   const Field* const found = state_->find( name );
   if( !found || found->readOnly ) {
      refuseName( name, true );
   }
   return *found;
}

bool Layout::has( std::string_view name ) const { return state_->find( name ) != nullptr; }

void Layout::refuseName( std::string_view name, bool forSetting ) const {
   if( has( name ) ) {
      throw Error( "field " + std::string( name ) + " of " + pairText() +
                   " is read-only: it holds the entry's tag" );
   }
   std::vector<std::string_view> allowed;
   for( const Field& field : fields() ) {
      if( !forSetting || !field.readOnly ) {
         allowed.push_back( field.name );
      }
   }
   for( const auto& field : Hardware::classFields( table() ) ) {
      if( field.name == name ) {
         throw Error( "field " + std::string( name ) + " does not exist in " + pairText() +
                      ", only on chip types and variants " +
                      textOf( pairsWithField( table(), field.identifier ) ) +
                      suggestion( name, allowed ) );
      }
   }
   throw Error( "no field " + inQuotes( name ) + " in " + pairText() +
                suggestion( name, allowed ) );
}

std::vector<Field> Layout::overlapping( std::string_view name ) const {
   const Field& one = field( name );
   std::vector<Field> others;
   for( const Field& other : fields() ) {
      if( &other != &one && other.overlaps( one ) ) {
         others.push_back( other );
      }
   }
   return others;
}

void Layout::refuseGet( std::size_t bytes, const Field& field ) const {
   if( field.width - 1 > 63 ) {
      throw Error( "field " + std::string( field.name ) + " of " + pairText() + " has " +
                   std::to_string( field.width ) +
                   " bits; a number holds at most 64, a value any" );
   }
   refuseEnd( bytes, field );
}

void Layout::refuseEnd( std::size_t bytes, const Field& field ) const {
   throw Error( bytesText( bytes ) + "field " + std::string( field.name ) + " of " + pairText() +
                " needs " + std::to_string( ( field.end() + 7 ) / 8 ) + ", a whole entry has " +
                std::to_string( this->bytes() ) );
}

Value Layout::value( std::span<const U8> image, const Field& field ) const {
   if( field.width <= 64 ) {
      return get( image, field );
   }
   if( field.width > Value::maxBits || field.end() > 8 * image.size() ) {
      refuseEnd( image.size(), field );
   }
   Value::Words words{};
   for( unsigned done = 0; done < field.width; done += 64 ) {
      words[done / 64] = Detail::bitsAt( image.data(), image.size(), field.offset + done,
                                         std::min( field.width - done, 64u ) );
   }
   return Value( words );
}

void Layout::set( std::span<U8> image, const Field& field, const Value& value ) const {
   requireFits( field, value );
   if( field.end() > 8 * image.size() ) {
      refuseEnd( image.size(), field );
   }
   for( unsigned done = 0; done < field.width; done += 64 ) {
      Detail::bitsAtAre( image.data(), image.size(), field.offset + done,
                         std::min( field.width - done, 64u ), value.word( done / 64 ) );
   }
}

void Layout::requireFits( const Field& field, const Value& value, std::string_view given ) const {
   if( value.bits() > field.width ) [[unlikely]] {
      refuseValue( *this, field, value, given );
   }
}

void Layout::requireFields( std::span<const U8> image ) const {
   const std::size_t needed = ( state_->end + 7 ) / 8;
   if( image.size() < needed ) {
      throw Error( bytesText( image.size() ) + "the fields of " + pairText() + " need " +
                   std::to_string( needed ) + ", a whole entry has " + std::to_string( bytes() ) );
   }
}

std::optional<TagField> Layout::wrongTag( std::span<const U8> image ) const {
   for( const TagField& one : tag() ) {
      if( get( image, one.field ) != one.value ) {
         return one;
      }
   }
   return std::nullopt;
}

std::optional<Layout> Layout::variantOf( std::span<const U8> image ) const {
   const auto pairs = variantsOn( table(), chip().number );
   for( const U32 other : pairs->variants ) {
      const Layout layout( table(), chip(), other );
      if( layout.bytes() == image.size() && !layout.wrongTag( image ) ) {
         return layout;
      }
   }
   return std::nullopt;
}

void Layout::requireEntry( std::span<const U8> image ) const {
   if( image.size() != bytes() ) {
      throw Error( bytesText( image.size() ) + "an entry of " + pairText() + " has " +
                   std::to_string( bytes() ) );
   }
   if( const auto wrong = wrongTag( image ) ) {
      const auto owner = variantOf( image );
      throw Error(
         "the image is not one of " + pairText() + ": its tag " + std::string( wrong->field.name ) +
         " is " + hexOf( get( image, wrong->field ) ) + ", not " + hexOf( wrong->value ) +
         ( owner ? "; did you mean variant " + std::to_string( owner->variant() ) + '?' : "" ) );
   }
}

std::optional<Address> Layout::address( const EntryIndex& index ) const {
   const auto require = [this]( const char* name, U64 given, U32 count ) {
      if( given >= count ) {
         throw Error( std::string( name ) + ' ' + std::to_string( given ) + " is out of range in " +
                      pairText() + "; allowed: 0" +
                      ( count > 1 ? " to " + std::to_string( count - 1 ) : "" ) );
      }
   };
   require( "entry", index.entry, info().entries );
   require( "array", index.array, info().arrayElements );
   require( "identifier", index.identifier, info().instanceCount );
   const auto& address = state_->address;
   if( !address ) {
      return std::nullopt;
   }
   return Address{ static_cast<U32>( address->base + index.entry * address->entryStep +
                                     index.array * address->arrayStep ),
                   address->accessTypes[index.identifier], address->destBlocks[index.identifier] };
}

FieldReader::FieldReader( const Layout& layout, const Field& field )
   : layout_( layout ), needed_( ( layout.state_->end + 7 ) / 8 ),
     first_( needed_, field.offset, std::min( field.width, 64u ) ) {
   for( unsigned done = 64; done < field.width; done += 64 ) {
      more_.emplace_back( needed_, field.offset + done, std::min( field.width - done, 64u ) );
   }
}

Value FieldReader::wideValue( std::span<const U8> image ) const {
   Value::Words words{ get( image ) };
   for( std::size_t i = 0; i < more_.size(); ++i ) {
      words[i + 1] = more_[i].read( image.data() );
   }
   return Value( words );
}

bool operator==( const Layout& left, const Layout& right ) {
   return left.state_ == right.state_ ||
          ( left.table() == right.table() && left.chip().number == right.chip().number &&
            left.variant() == right.variant() );
}

std::vector<Layout> layoutsOn( const Chip& chip ) {
   std::vector<Layout> layouts;
   for( const auto table : allTables() ) {
      if( const auto pairs = variantsOn( table, chip.number ) ) {
         for( const U32 variant : pairs->variants ) {
            layouts.emplace_back( table, U64( chip.number ), variant );
         }
      }
   }
   return layouts;
}

} // namespace Vorn
