// What changes in a table's entry from one pair of chip type and variant to another.
#include <Vorn/Difference.h>

#include <Vorn/Bits.h>
#include <Vorn/Error.h>
#include <Vorn/Fields.h>

#include <algorithm>
#include <cstddef>

namespace Vorn {

namespace {

unsigned firstBit( const Difference::Field& field ) {
   return ( field.from ? field.from : field.to )->offset;
}

} // namespace

std::array<Number, 4> numbersOf( const Hardware::PairInfo& info ) {
   return { { { "words", info.width },
              { "entries", info.entries },
              { "arrayElements", info.arrayElements },
              { "instances", info.instanceCount } } };
}

std::string Difference::Field::change() const {
   if( !to ) {
      return "gone";
   }
   if( !from ) {
      return "new";
   }
   std::string moved = from->offset == to->offset ? "" : "moved";
   if( from->width == to->width ) {
      return moved;
   }
   return moved + ( moved.empty() ? "" : ", " ) +
          ( from->width < to->width ? "widened" : "narrowed" );
}

Difference differenceOf( const Layout& from, const Layout& to ) {
   if( from.table() != to.table() ) {
      throw Error( from.pairText() + " and " + to.pairText() +
                   " are of two tables; compare pairs of one" );
   }
   Difference difference;
   const auto numbersFrom = numbersOf( from.info() );
   const auto numbersTo = numbersOf( to.info() );
   for( std::size_t i = 0; i < numbersFrom.size(); ++i ) {
      if( numbersFrom[i].value != numbersTo[i].value ) {
         difference.numbers.push_back(
            { numbersFrom[i].name, numbersFrom[i].value, numbersTo[i].value } );
      }
   }

   const auto bitsIn = []( const Layout& layout,
                           std::string_view name ) -> std::optional<Difference::Bits> {
      if( !layout.has( name ) ) {
         return std::nullopt;
      }
      const Field& field = layout.field( name );
      return Difference::Bits{ field.offset, field.width };
   };
   difference.unchanged = 0;
   for( const auto& field : Hardware::classFields( from.table() ) ) {
      const Difference::Field bits{ field.name, bitsIn( from, field.name ),
                                    bitsIn( to, field.name ) };
      if( bits.from != bits.to ) {
         difference.fields.push_back( bits );
      } else if( bits.from ) {
         ++difference.unchanged;
      }
   }
   std::stable_sort( difference.fields.begin(), difference.fields.end(),
                     []( const Difference::Field& left, const Difference::Field& right ) {
                        return firstBit( left ) < firstBit( right );
                     } );
   return difference;
}

namespace {

// Whether the entry is all zeroes although its pair has a tag: a memory before it is written.
bool isUnwritten( const EntryState& state ) {
   return state.layout && !state.layout->tag().empty() &&
          std::all_of( state.image.begin(), state.image.end(),
                       []( U8 byte ) { return byte == 0; } ) &&
          state.layout->wrongTag( state.image );
}

bool areSame( std::span<const U8> left, std::span<const U8> right ) {
   return std::equal( left.begin(), left.end(), right.begin(), right.end() );
}

// The bits of the field; unless all count, without those of narrower fields that lie within it.
std::vector<Difference::Bits> bitsOf( const Layout& layout, const Field& field, bool all ) {
   std::vector<bool> counts( field.width, true );
   for( const Field& other : layout.fields() ) {
      if( !all && other.width < field.width && other.offset >= field.offset &&
          other.end() <= field.end() ) {
         std::fill_n( counts.begin() + static_cast<std::ptrdiff_t>( other.offset - field.offset ),
                      other.width, false );
      }
   }
   std::vector<Difference::Bits> bits;
   for( U32 at = 0; at < field.width; ++at ) {
      const U32 offset = field.offset + at;
      if( !counts[at] ) {
         continue;
      }
      if( !bits.empty() && bits.back().offset + bits.back().width == offset &&
          bits.back().width < 64 ) {
         ++bits.back().width;
      } else {
         bits.push_back( { offset, 1 } );
      }
   }
   return bits;
}

} // namespace

std::string_view EntryChange::text() const {
   constexpr std::string_view names[] = { "the same", "added", "removed", "changed", "replaced" };
   return names[static_cast<std::size_t>( kind )];
}

const std::vector<EntryComparison::Looked>& EntryComparison::lookedAt( const Layout& layout ) {
   for( const auto& [known, looked] : looked_ ) {
      if( known == layout ) {
         return looked;
      }
   }
   std::vector<Looked> looked;
   const auto add = [&]( const Field& field ) {
      looked.push_back( { field, bitsOf( layout, field, !list_.empty() ) } );
   };
   if( list_.empty() ) {
      std::for_each( layout.fields().begin(), layout.fields().end(), add );
   } else {
      const auto fields = fieldsIn( list_, layout );
      std::for_each( fields.begin(), fields.end(), add );
   }
   return looked_.emplace_back( layout, std::move( looked ) ).second;
}

EntryChange EntryComparison::changeOf( EntryState before, EntryState after ) {
   using Kind = EntryChange::Kind;
   for( EntryState* const state : { &before, &after } ) {
      if( state->layout ) {
         state->layout->requireFields( state->image );
         state->image =
            state->image.first( std::min( state->image.size(), state->layout->bytes() ) );
      }
   }
   const bool isSamePair = before.layout && after.layout &&
                           ( before.layout == after.layout || *before.layout == *after.layout );
   if( isSamePair && areSame( before.image, after.image ) ) {
      return {};
   }
   const bool was = before.layout && !isUnwritten( before );
   const bool is = after.layout && !isUnwritten( after );
   if( !was || !is ) {
      return { was ? Kind::removed : is ? Kind::added : Kind::none, {} };
   }
   if( !isSamePair ) {
      return { Kind::replaced, {} };
   }
   EntryChange change;
   const auto differs = [&]( const Difference::Bits& bits ) {
      const auto valueIn = [&]( const EntryState& state ) {
         return Detail::bitsAt( state.image.data(), state.image.size(), bits.offset, bits.width );
      };
      return valueIn( before ) != valueIn( after );
   };
   for( const auto& [field, bits] : lookedAt( *after.layout ) ) {
      if( std::any_of( bits.begin(), bits.end(), differs ) ) {
         change.fields.push_back( field );
      }
   }
   const std::size_t common = std::min( before.image.size(), after.image.size() );
   const bool isChanged =
      !change.fields.empty() ||
      ( list_.empty() && !areSame( before.image.first( common ), after.image.first( common ) ) );
   change.kind = isChanged ? Kind::changed : Kind::none;
   return change;
}

} // namespace Vorn
