// The layout of the help of the program and of its verbs.
#pragma once

#include <memory>

namespace CLI {
class FormatterBase;
}

namespace Vorn {

// For the command line; verbs that are added to it take it over.
std::shared_ptr<CLI::FormatterBase> helpFormatter();

} // namespace Vorn
