// Many plain entries of a dump at once: which of them are selected, and their lines.
#pragma once

#include "forms/EntryLine.h"

#include <Vorn/Dump.h>
#include <Vorn/Filter.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace Vorn {

// What becomes of the entries of a layout.
struct EntryPlan {
   const Layout* layout;
   std::size_t bytes;            // of an entry
   std::optional<Filter> filter; // the condition that they have to meet
   bool isLeftOut = false;       // they can't meet it
   const EntryLine* line;        // composes their lines; null where that is done elsewhere
};

// Some entries of a dump, taken from the reader to be worked on in any thread.
class DumpBlock {
public:
   // Takes the entries of the run from the reader. The plans are those of all layouts that they may
   // have, that of empty ones first; they have to outlive the block.
   void take( DumpReader& reader, const DumpRun& run, std::span<const EntryPlan> plans,
              bool takesEmpty );

   // Does with the entries what the plans say. Any thread may.
   void work();

   std::size_t images() const { return count_; }
   std::size_t bytes() const { return images_.size(); }

   // After work(): how many entries are empty, and have been left out; those of each plan that
   // can't fulfil its condition, in order of the first; the lines of the others that do, or their
   // numbers where the plan has none.
   struct LeftOut {
      const Layout* layout;
      U64 entries;
   };
   U64 empty() const { return empty_; }
   U64 taken() const { return taken_; }
   const std::vector<LeftOut>& leftOut() const { return leftOut_; }
   std::string_view lines() const { return lines_.text(); }
   const std::vector<std::size_t>& kept() const { return kept_; }
   DumpEntry entry( std::size_t number ) const;

private:
   const EntryPlan* planOf( std::size_t number ) const { return plan_ ? plan_ : ofEach_[number]; }

   std::span<const EntryPlan> plans_;
   const EntryPlan* plan_ = nullptr;      // of all entries; null where each has its own
   std::vector<const EntryPlan*> ofEach_; // null for an empty one
   bool areEmpty_ = false;
   bool takesEmpty_ = false;
   std::vector<U8> images_;
   std::size_t stride_ = 0;
   std::size_t count_ = 0;
   std::optional<EntryIndex> first_;
   std::optional<U32> address_;
   U32 addressStep_ = 0;

   U64 empty_ = 0;
   U64 taken_ = 0;
   std::vector<LeftOut> leftOut_;
   TextBuffer lines_;
   std::vector<std::size_t> kept_;
};

} // namespace Vorn
