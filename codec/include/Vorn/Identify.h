// Which pairs of a chip type an entry image may belong to, by its length and its tag.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

//    const Vorn::Identifier identifier( Vorn::chipOf( "BCM88690_B0" ) );
//    for( const Vorn::Layout& layout : identifier.layoutsOf( image ) ) { ... }
class VORN_API Identifier {
public:
   // A table that an image may belong to, or can't, and the variants for which one reason holds.
   struct Verdict {
      std::string_view table;
      ChipVariants variants;
      std::string reason;
   };

   // Pairs with the same tag and length: nothing in an image distinguishes them.
   struct Group {
      std::vector<TagField> tag; // of the first pair
      std::vector<Verdict> members;
   };

   struct Verdicts {
      std::vector<Group>
         groups; // the one whose tag has the most bits first, one without a tag last
      std::vector<Verdict> ruledOut;
   };

   explicit Identifier( const Chip& chip ) : chip_( chip ), layouts_( layoutsOn( chip ) ) {}

   const Chip& chip() const { return chip_; }

   // All pairs of the chip type.
   std::span<const Layout> layouts() const { return layouts_; }

   // The pairs that the image may belong to: those with its length and its tag.
   std::vector<Layout> layoutsOf( std::span<const U8> image ) const;

   // The same with the reasons, and with the pairs that it can't belong to.
   Verdicts verdictsOn( std::span<const U8> image ) const;

   // Throws the reason why an image of that many bytes, for which there are no groups, belongs to
   // no pair.
   [[noreturn]] void refuse( std::size_t bytes ) const;

private:
   const Chip& chip_;
   std::vector<Layout> layouts_;
};

} // namespace Vorn
