// An entry's format as text of at most 80 columns: the drawing, and the list of its fields.
#pragma once

#include <Vorn/Drawing.h>

#include <string>

namespace Vorn {

enum class BoxLines { ascii, unicode };

// The rows of the drawing, each a word with its most significant bit at the left.
std::string drawnAsText( const Drawing& drawing, BoxLines style );

enum class Listed {
   places, // where each field lies
   all,    // also its identifier, its name in the hardware's documents and whether it is read-only
};

// The fields of the drawing's format in bit order, with their keys, and the bits of no field.
std::string fieldList( const Drawing& drawing, Listed listed );

// What fits into the cells of drawnAsText().
DrawingRoom textRoom();

} // namespace Vorn
