// The quick path of records: lines of JSON as `vorn program` usually gets them.
#include "QuickRecords.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Value.h>

#ifdef VORN_WITH_SIMDJSON
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>
#endif

namespace Vorn {

#ifdef VORN_WITH_SIMDJSON

namespace {

// Not simdjson's ondemand, which is compiled for the lowest common processor; dom chooses its code
// at run time.
namespace Json = simdjson::dom;

static_assert( QuickRecords::padding >= simdjson::SIMDJSON_PADDING );

enum Key : unsigned { table, chip, variant, entry, array, identifier, fields, keyCount };

constexpr std::array<std::string_view, keyCount> keyNames{ "table", "chip",  "variant",
                                                           "entry", "array", "identifier",
                                                           "fields" };

// A line that isn't plain.
struct NotPlain {};

// The value, if it is of this kind.
template<class Wanted>
Wanted plain( simdjson::simdjson_result<Wanted> result ) {
   if( result.error() ) {
      throw NotPlain();
   }
   return result.value_unsafe();
}

} // namespace

struct QuickRecords::State {
   // A pair, and the fields in the order in which its last record had them.
   struct Pair {
      explicit Pair( Layout layout ) : composer( std::move( layout ), Overlap::laterHolds ) {}

      Composer composer;
      std::vector<const Field*> order;
   };

   using PairKey = std::tuple<std::string, U8, U64>;

   Composed compose( std::string_view line );
   void read( std::string_view line );
   unsigned keyOf( std::size_t index, std::string_view name );
   Pair& pairOf();
   void setFields( Pair& pair );
   static const Field& fieldOf( Pair& pair, std::size_t index, std::string_view name );

   Json::parser parser_;
   std::string_view table_;
   const Chip* chip_ = nullptr;
   std::array<U64, keyCount> numbers_{};
   Json::object fields_;
   std::array<unsigned, keyCount> order_{}; // of the keys of the last line
   std::string chipName_;                   // of chipOfName_
   const Chip* chipOfName_ = nullptr;
   std::map<PairKey, Pair> pairs_;
   Pair* last_ = nullptr;
   PairKey lastKey_;
};

// Which key the name of a member is: mostly the one that had its place in the last line.
unsigned QuickRecords::State::keyOf( std::size_t index, std::string_view name ) {
   if( index == keyCount ) {
      throw NotPlain();
   }
   unsigned& key = order_[index];
   if( keyNames[key] != name ) {
      const auto found = std::find( keyNames.begin(), keyNames.end(), name );
      if( found == keyNames.end() ) {
         throw NotPlain();
      }
      key = static_cast<unsigned>( found - keyNames.begin() );
   }
   return key;
}

void QuickRecords::State::read( std::string_view line ) {
   numbers_ = {};
   unsigned seen = 0;
   std::size_t index = 0;
   for( const auto member :
        plain( plain( parser_.parse( line.data(), line.size(), false ) ).get_object() ) ) {
      const unsigned key = keyOf( index++, member.key );
      if( ( seen & 1u << key ) != 0 ) {
         throw NotPlain();
      }
      seen |= 1u << key;
      if( key == table ) {
         table_ = plain( member.value.get_string() );
      } else if( key == fields ) {
         fields_ = plain( member.value.get_object() );
      } else if( key != chip ) {
         numbers_[key] = plain( member.value.get_uint64() );
      } else if( !member.value.is_string() ) {
         chip_ = &chipOf( plain( member.value.get_uint64() ) );
      } else {
         const auto text = plain( member.value.get_string() );
         if( !chipOfName_ || text != chipName_ ) {
            chipOfName_ = &chipOf( text );
            chipName_ = text;
         }
         chip_ = chipOfName_;
      }
   }
   constexpr unsigned needed = 1u << table | 1u << chip | 1u << fields;
   if( ( seen & needed ) != needed ) {
      throw NotPlain();
   }
}

QuickRecords::State::Pair& QuickRecords::State::pairOf() {
   const auto& [name, number, variantNumber] = lastKey_;
   if( last_ && name == table_ && number == chip_->number && variantNumber == numbers_[variant] ) {
      return *last_;
   }
   const Layout layout( table_, chip_->number, numbers_[variant] );
   lastKey_ = { std::string( table_ ), chip_->number, numbers_[variant] };
   // A pair may have spellings without end.
   const PairKey key( layout.table(), layout.chip().number, layout.variant() );
   auto at = pairs_.find( key );
   if( at == pairs_.end() ) {
      at = pairs_.emplace( key, Pair( layout ) ).first;
   }
   last_ = &at->second;
   return *last_;
}

const Field& QuickRecords::State::fieldOf( Pair& pair, std::size_t index, std::string_view name ) {
   if( index < pair.order.size() && pair.order[index]->name == name ) {
      return *pair.order[index];
   }
   const Field& field = pair.composer.layout().settable( name );
   pair.order.resize( std::max( pair.order.size(), index + 1 ), &field );
   pair.order[index] = &field;
   return field;
}

void QuickRecords::State::setFields( Pair& pair ) {
   const Field* const first = pair.composer.layout().fields().data();
   std::array<U64, 2> seen{};
   std::size_t index = 0;
   for( const auto member : fields_ ) {
      const Field& field = fieldOf( pair, index++, member.key );
      const auto place = static_cast<std::size_t>( &field - first );
      if( place >= 64 * seen.size() || ( seen[place / 64] & U64( 1 ) << place % 64 ) != 0 ) {
         throw NotPlain();
      }
      seen[place / 64] |= U64( 1 ) << place % 64;
      if( !member.value.is_string() ) {
         pair.composer.set( field, plain( member.value.get_uint64() ) );
         continue;
      }
      const auto text = plain( member.value.get_string() );
      if( text == maskWord ) {
         pair.composer.fill( field );
      } else {
         pair.composer.set( field, parseValue( text, member.key ) );
      }
   }
}

Composed QuickRecords::State::compose( std::string_view line ) {
   read( line );
   Pair& pair = pairOf();
   const Layout& layout = pair.composer.layout();
   const EntryIndex index{ numbers_[entry], numbers_[array], numbers_[identifier] };
   const auto address = layout.address( index );
   pair.composer.reset();
   setFields( pair );
   return { layout, index, address, pair.composer.image() };
}

QuickRecords::QuickRecords() : state_( std::make_unique<State>() ) {}
QuickRecords::~QuickRecords() = default;

std::optional<Composed> QuickRecords::compose( std::string_view line ) {
   // The careful parser refuses what this one would accept.
   if( std::memchr( line.data(), '\0', line.size() ) || line.find( "-0" ) != line.npos ) {
      return std::nullopt;
   }
   try {
      return state_->compose( line );
   } catch( const NotPlain& ) {
      return std::nullopt;
   } catch( const Error& ) {
      // The careful parser says where it is.
      return std::nullopt;
   }
}

#else

struct QuickRecords::State {};

QuickRecords::QuickRecords() = default;
QuickRecords::~QuickRecords() = default;

std::optional<Composed> QuickRecords::compose( std::string_view ) { return std::nullopt; }

#endif

} // namespace Vorn
