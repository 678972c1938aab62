// Arguments and texts of help that several verbs share.
#pragma once

#include "Plan.h"

#include <string>

namespace CLI {
class App;
}

namespace Vorn {

// Adds --chip.
void addChip( CLI::App& verb, std::string& chip );

// Adds TABLE, --chip and --variant.
void addPair( CLI::App& verb, PairText& pair );

// Where an entry of a memory lies, as a person writes it.
struct PlaceText {
   std::string entry = "0";
   std::string array = "0";
   std::string identifier = "0";
};

// Adds --entry, --array and --identifier.
void addPlace( CLI::App& verb, PlaceText& place );

// The numbers of the text; what is none is an Error.
Place placeOf( const PlaceText& place );

// Sets what stands below the options in the verb's help: what it does, in paragraphs to be wrapped,
// and example command lines.
void describe( CLI::App& verb, const std::string& paragraphs, const std::string& examples );

// A paragraph with the chip types by name and number.
std::string chipTypesParagraph();

} // namespace Vorn
