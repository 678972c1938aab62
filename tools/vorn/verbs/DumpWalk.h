// What verbs over whole dumps share: their arguments, and the walk over the entries.
#pragma once

#include "Arguments.h"
#include "Io.h"
#include "Pipeline.h"
#include "verbs/DumpBlock.h"
#include "verbs/Failures.h"

#include <Vorn/Dump.h>
#include <Vorn/Filter.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace Vorn {

struct DumpArguments {
   std::optional<PairText> pair;   // nothing where each image says it itself; of its variant, too,
                                   // if that is empty
   std::string chip;               // alone, for images that have an address; else empty
   std::vector<std::string> image; // its text, in any number of pieces
   std::vector<std::string> paths; // of files of images, "-" for standard input
   ImageFormat format = ImageFormat::automatic;
   SplitText split;          // of a dump
   bool isStrict = false;    // what would be a warning is an Error
   bool keepsGoing = false;  // after a bad image
   bool printsEmpty = false; // also entries of zeroes that fit no tag
   std::string where;        // the condition of entries that are looked at; empty for all
   std::string fields;       // the names of fields that are looked at; empty for all
};

// Adds the options that name chip type and variant, and say what a dump is like and how it is read.
void addDump( CLI::App& verb, PairText& pair, DumpArguments& arguments );

// The layouts that the images of a dump may have: the reader's own, or those of the chip type,
// of all where it is empty.
std::vector<Layout> possibleLayouts( const DumpReader& reader, const std::string& ofChip );

// Adds --where and --fields.
void addChoice( CLI::App& verb, DumpArguments& arguments );

// The paragraph on --where, for the help.
std::string whereParagraphs();

// Goes over the entries of all files or arguments, and counts what it leaves out.
class DumpWalk {
public:
   // Wrong arguments are Errors.
   DumpWalk( const DumpArguments& arguments, Output& output );

   const DumpReader& reader() const { return reader_; }

   // The names of --fields, which exist on one pair at least; nothing if it isn't given.
   std::optional<std::vector<std::string_view>> fields() const;

   // Called with the name of each file, where there are several.
   std::function<void( const std::string& )> onFile;

   // Entries may be looked at many at a time, by several threads: `visit` never fails, and keeps to
   // their order. What composes the lines of a layout's entries then, if there are such lines, is
   // said by `lineFor`; they are handed to `onLines` instead of their entries to `visit`.
   bool takesBlocks = false;
   std::function<const EntryLine*( const Layout& )> lineFor;
   std::function<void( std::string_view )> onLines;

   // Calls `visit` for each entry that isn't empty and fulfils the condition. An Error of it gets
   // the place of the entry. A bad image ends the walk with an Error, or is reported on standard
   // error.
   void run( const std::function<void( const DumpEntry& )>& visit );

   // To be called at the end: reports what was left out. If there were Errors it ends in HasFailed;
   // `done` is what has become of the entries, for the message: "printed".
   void finish( std::string_view done );

private:
   static constexpr std::size_t mostWarnings = 8;

   void readFile( const std::string& path );
   void readAll();
   void plan();
   bool takeBlock();
   void finishBlock( DumpBlock& block );
   void take();
   void warn( const std::string& doubt );

   const DumpArguments& arguments_;
   Output& output_;
   DumpReader reader_;
   std::optional<PairFilter> filter_;
   std::set<std::string> reported_; // warnings
   U64 images_ = 0;
   U64 done_ = 0;
   U64 empty_ = 0;
   U64 unreported_ = 0; // warnings
   Failures failures_{ arguments_.keepsGoing, output_ };
   std::function<void( const DumpEntry& )> visit_;
   std::vector<EntryPlan> plans_;
   bool hasLines_ = false;        // the last of them has had many
   Pipeline<DumpBlock> pipeline_; // its threads end first
};

// Decides what the TABLE and the IMAGEs of the command line are: any of them may be
// missing. Wrong usage throws as CLI11 does.
struct DumpLine {
   PairText pair{ "", "", "" };
   void completeInto( DumpArguments& arguments );
};

} // namespace Vorn
