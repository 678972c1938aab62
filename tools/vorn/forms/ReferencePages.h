// The reference of all tables and registers, as pages of Markdown.
#pragma once

#include <string>
#include <vector>

namespace Vorn {

struct Page {
   std::string file;
   std::string text;
};

// The indexes by table and by field first, then a page for each table or register in registry
// order.
std::vector<Page> referencePages();

} // namespace Vorn
