// Which pairs of a chip type an entry image may be of, by its length and its tag.
#pragma once

#include "Chips.h"
#include "Plan.h"

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

class Identifier {
public:
   // A table of which an image may be, or is not, and the variants of it for which one reason
   // holds.
   struct Verdict {
      std::string_view table;
      ChipVariants variants;
      std::string reason;
   };

   // Pairs with one tag and one length: nothing in an image tells them apart.
   struct Group {
      std::vector<Plan::TagField> tag; // of the first pair
      std::vector<Verdict> members;
   };

   struct Verdicts {
      std::vector<Group>
         groups; // the one whose tag has the most bits first, one without a tag last
      std::vector<Verdict> ruledOut;
   };

   explicit Identifier( const Chip& chip ) : chip_( chip ), plans_( plansOn( chip ) ) {}

   const Chip& chip() const { return chip_; }

   Verdicts verdictsOn( std::span<const U8> image ) const;

   // Ends with why an image of that many bytes, on which there are no groups, is of no pair.
   [[noreturn]] void refuse( std::size_t bytes ) const;

private:
   const Chip& chip_;
   std::vector<Plan> plans_;
};

} // namespace Vorn
