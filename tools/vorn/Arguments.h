// Arguments and texts of help that several verbs share.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace Vorn {

// Adds --chip.
void addChip( CLI::App& verb, std::string& chip );

// A pair of a table as a person writes it.
struct PairText {
   std::string table;
   std::string chip; // name or number
   std::string variant = "0";
};

// Whether a table has exactly this name.
bool isTable( std::string_view name );

// What is unknown or doesn't exist is an Error.
Layout layoutOf( const PairText& pair );

// Adds TABLE, --chip and --variant.
void addPair( CLI::App& verb, PairText& pair );

// Which entry of a memory, as a person writes it.
struct IndexText {
   std::string entry = "0";
   std::string array = "0";
   std::string identifier = "0";
};

// Adds --entry, --array and --identifier.
void addIndex( CLI::App& verb, IndexText& index );

// The numbers of the text; what is none is an Error.
EntryIndex indexOf( const IndexText& index );

// The pieces of an IMAGE as one text.
std::string textOf( const std::vector<std::string>& pieces );

// How the entries of a dump lie, as a person writes it.
struct SplitText {
   std::optional<std::string> stride;
   std::optional<std::string> firstEntry;
   std::string array = "0";
   std::string identifier = "0";
};

// Adds --stride, --first-entry, --array and --identifier.
void addSplit( CLI::App& verb, SplitText& split );

// Says it to a reader; what is no number is an Error.
void setSplit( DumpOptions& options, const SplitText& split );

// Whether words that may be an IMAGE are none, but files: one of them at least is there, or can't
// be anything else, or all are "-".
bool areFiles( const std::vector<std::string>& words, ImageFormat format );

// The bytes that --stride says, 0 if it isn't given.
std::size_t strideOf( const std::optional<std::string>& text );

// Adds --image-format.
void addImageFormat( CLI::App& verb, ImageFormat& format );

// Sets what stands below the options in the verb's help: what it does, in paragraphs to be wrapped,
// and example command lines.
void describe( CLI::App& verb, const std::string& paragraphs, const std::string& examples );

// A paragraph with the chip types by name and number, and how a value and an image may be written.
std::string chipTypesParagraph();
std::string notationsParagraphs();
std::string imagesParagraphs();

} // namespace Vorn
