// An entry's format as a picture for documents.
#pragma once

#include <Vorn/Difference.h>
#include <Vorn/Drawing.h>
#include <Vorn/Export.h>

#include <Kelvar/Types.h>

#include <span>
#include <string>

namespace Vorn {

// The drawing as a whole SVG file under this title. It needs no more than a monospaced font. Each
// cell is a group whose own title, which a browser shows, says all about the field.
VORN_API std::string drawnAsSvg( const Drawing& drawing, const std::string& title );

// The same with the values of an image: each cell shows the value of its own bits. A field in
// several cells is listed below with its whole value. The image is as long as an entry.
VORN_API std::string imageAsSvg( const Drawing& drawing, const std::string& title,
                                 std::span<const U8> image );

// The same for two images of the pair: the cells that differ are marked, with old and new.
VORN_API std::string changeAsSvg( const Drawing& drawing, const std::string& title,
                                  std::span<const U8> before, std::span<const U8> after );

// The drawings of two pairs of a table, one below the other, with what changes marked and listed.
VORN_API std::string differenceAsSvg( const Drawing& from, const Drawing& to,
                                      const Difference& difference, const std::string& fromTitle,
                                      const std::string& toTitle );

// How much of a label fits into a cell of these pictures.
VORN_API DrawingRoom svgRoom();

} // namespace Vorn
