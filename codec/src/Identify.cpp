// Which pairs of a chip type an entry image may be of, by its length and its tag.
#include <Vorn/Identify.h>

#include <Vorn/Error.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <set>

namespace Vorn {

namespace {

using Tag = std::span<const TagField>;

bool sameTag( Tag left, Tag right ) {
   const auto same = []( const TagField& a, const TagField& b ) {
      return a.field.offset == b.field.offset && a.field.width == b.field.width &&
             a.value == b.value;
   };
   return std::equal( left.begin(), left.end(), right.begin(), right.end(), same );
}

unsigned bitsOf( Tag tag ) {
   unsigned bits = 0;
   for( const auto& [field, value] : tag ) {
      bits += field.width;
   }
   return bits;
}

std::string reasonOf( const Layout& layout ) {
   const Tag tag = layout.tag();
   if( tag.empty() ) {
      return "length alone, " + std::to_string( layout.bytes() ) + " bytes";
   }
   std::string text;
   for( const auto& [field, value] : tag ) {
      text.append( text.empty() ? "tag: " : ", " ).append( field.name ).append( " " );
      text.append( hexOf( value ) );
   }
   return text;
}

// Adds the pair to the variants of its table with this reason.
void add( std::vector<Identifier::Verdict>& verdicts, const Layout& layout,
          const std::string& reason ) {
   auto verdict = std::find_if( verdicts.begin(), verdicts.end(), [&]( const auto& other ) {
      return other.table == layout.table() && other.reason == reason;
   } );
   if( verdict == verdicts.end() ) {
      verdict = verdicts.emplace( verdict );
      verdict->table = layout.table();
      verdict->variants.chip = layout.chip().number;
      verdict->variants.any = !layout.info().hasVariants;
      verdict->reason = reason;
   }
   verdict->variants.variants.push_back( layout.variant() );
}

// Why the image is not of the pair; empty if it may be.
std::string flawOf( const Layout& layout, std::span<const U8> image ) {
   if( image.size() != layout.bytes() ) {
      return "an entry has " + std::to_string( layout.bytes() ) + " bytes";
   }
   for( const auto& [field, value] : layout.tag() ) {
      const U64 found = layout.get( image, field );
      if( found != value ) {
         return std::string( field.name ) + " is " + hexOf( found ) + ", not " + hexOf( value );
      }
   }
   return {};
}

} // namespace

std::vector<Layout> Identifier::layoutsOf( std::span<const U8> image ) const {
   std::vector<Layout> found;
   std::copy_if( layouts_.begin(), layouts_.end(), std::back_inserter( found ),
                 [&]( const Layout& layout ) { return flawOf( layout, image ).empty(); } );
   return found;
}

Identifier::Verdicts Identifier::verdictsOn( std::span<const U8> image ) const {
   Verdicts verdicts;
   auto& groups = verdicts.groups;
   for( const Layout& layout : layouts_ ) {
      const Tag tag = layout.tag();
      if( const auto flaw = flawOf( layout, image ); !flaw.empty() ) {
         add( verdicts.ruledOut, layout, flaw );
         continue;
      }
      auto group = std::find_if( groups.begin(), groups.end(),
                                 [&]( const Group& other ) { return sameTag( other.tag, tag ); } );
      if( group == groups.end() ) {
         group = groups.insert( group, { { tag.begin(), tag.end() }, {} } );
      }
      add( group->members, layout, reasonOf( layout ) );
   }
   std::stable_sort( groups.begin(), groups.end(), []( const Group& left, const Group& right ) {
      return bitsOf( left.tag ) > bitsOf( right.tag );
   } );
   return verdicts;
}

void Identifier::refuse( std::size_t bytes ) const {
   std::set<std::size_t> lengths;
   for( const Layout& layout : layouts_ ) {
      lengths.insert( layout.bytes() );
   }
   const std::string given = "the image has " + std::to_string( bytes ) + " bytes";
   if( lengths.contains( bytes ) ) {
      throw Error( given + ", but the tag of no such entry on " + chip_.name );
   }
   throw Error( given + "; an entry on " + chip_.name + " has " +
                rangesOf( std::vector<U32>( lengths.begin(), lengths.end() ) ) );
}

} // namespace Vorn
