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

// Rewrites the files, all or none: after an Error each holds what it held before, or still doesn't
// exist. A file that is there keeps its owner, its mode, its other names and the links that
// lead to it. What is no regular file, such as a device or a pipe, is written to directly, before
// the others.
void writeFiles( std::span<const FileText> files );

void writeFile( const std::string& path, std::string_view text );

} // namespace Vorn
