// An entry's format as a picture for documents.
#pragma once

#include "forms/Drawing.h"

#include <string>

namespace Vorn {

// The drawing as a whole SVG file under this title. It needs no more than a monospaced font. Each
// cell is a group whose own title, which a browser shows, says all about the field.
std::string drawnAsSvg( const Drawing& drawing, const std::string& title );

// What fits into the cells of drawnAsSvg().
Room svgRoom();

} // namespace Vorn
