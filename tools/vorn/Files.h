// Files that are written as a whole or not at all.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace Vorn {

struct FileText {
   std::string path;
   std::string_view text;
};

// Writes the files anew, all or none: after an Error each holds what it held before, or is still
// not there. A file that is there keeps its owner, its mode, its other names and the links that
// lead to it. What is no regular file, such as a device or a pipe, is written to directly, before
// the others.
void writeFiles( std::span<const FileText> files );

void writeFile( const std::string& path, std::string_view text );

} // namespace Vorn
