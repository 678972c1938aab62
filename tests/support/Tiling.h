// Fields that cover a range of the entry without a gap and without an overlap.
#pragma once

#include "Bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace Testing {

// The bits of the view's entry that the mask of one field sets. The entry is zeroed before.
template<class Owner, class View>
Bits bitsSetBy( Owner& view, void ( View::*mask )() ) {
   std::fill( view.buf(), view.buf() + view.len(), U8{ 0 } );
   ( view.*mask )();
   return bitsAt( Image( view.buf(), view.buf() + view.len() ), 0, 8u * view.len() );
}

// Expects that the fields, given by their masks, follow each other from bit `begin` up to and not
// including bit `end`, each starting where the one before it ends:
//
//    expectTiling<View>( view, { &View::commandMask, &View::flagMask }, 0, 8 );
template<class View>
void expectTiling( View& view, const std::vector<void ( View::* )()>& masks, unsigned begin,
                   unsigned end ) {
   unsigned next = begin;
   for( std::size_t place = 0; place < masks.size(); ++place ) {
      const Bits bits = bitsSetBy( view, masks[place] );
      const unsigned width = static_cast<unsigned>( bits.count() );
      EXPECT_NE( width, 0u ) << "field " << place << " of the tiling";
      EXPECT_EQ( bits, lowOnes( width ) << next ) << "field " << place << " of the tiling";
      next += width;
   }
   EXPECT_EQ( next, end );
}

} // namespace Testing
