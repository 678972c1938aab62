// An entry's format as a picture for documents.
#pragma once

#include <Vorn/Drawing.h>
#include <Vorn/Export.h>

#include <string>

namespace Vorn {

// The drawing as a whole SVG file under this title. It needs no more than a monospaced font. Each
// cell is a group whose own title, which a browser shows, says all about the field.
VORN_API std::string drawnAsSvg( const Drawing& drawing, const std::string& title );

// What fits into the cells of drawnAsSvg().
VORN_API DrawingRoom svgRoom();

} // namespace Vorn
