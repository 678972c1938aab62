// Arguments and texts of help that several verbs share.
#pragma once

#include "Plan.h"

#include <string>

namespace CLI {
class App;
}

namespace Vorn {

// Adds TABLE, --chip and --variant.
void addPair( CLI::App& verb, PairText& pair );

// Sets what stands below the options in the verb's help: what it does, in paragraphs to be wrapped,
// and example command lines.
void describe( CLI::App& verb, const std::string& paragraphs, const std::string& examples );

// A paragraph with the chip types by name and number.
std::string chipTypesParagraph();

} // namespace Vorn
