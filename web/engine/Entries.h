// The entries of a text or a dump, kept in memory.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Explorer {

class Entries {
public:
   struct Entry {
      const Vorn::Layout* layout;
      std::span<const U8> image;
      std::optional<U64> entry; // where it lies, as far as the dump says
      std::optional<U64> array;
      std::optional<U64> identifier;
      bool isEmpty;
   };

   Entries() = default;

   // One image, as an argument of `vorn decode` is.
   static Entries ofArgument( std::string_view text, const Vorn::DumpOptions& options );

   // What `vorn decode --keep-going` reads from a file of that name.
   static Entries ofFile( std::string_view bytes, const std::string& name,
                          const Vorn::DumpOptions& options );

   std::size_t size() const { return rows_.size(); }
   Entry at( std::size_t index ) const;

   // The first error, or else the first warning, as `vorn` prints it, and how many more there are;
   // empty if there are none.
   std::string message() const;
   bool hasErrors() const { return errors_ > 0; }

private:
   struct Row {
      std::size_t layout;
      std::size_t begin; // in bytes_
      std::size_t bytes;
      std::optional<U64> entry;
      std::optional<U64> array;
      std::optional<U64> identifier;
      bool isEmpty;
   };

   void readAll( Vorn::DumpReader& reader );
   void add( const Vorn::DumpEntry& entry );
   void add( const Vorn::DumpRun& run );
   std::size_t numberOf( const Vorn::Layout& layout ); // in layouts_

   std::vector<Vorn::Layout> layouts_;
   std::map<const Vorn::Layout*, std::size_t> layoutOf_; // by the reader's own, while it reads
   std::vector<U8> bytes_;
   std::vector<Row> rows_;
   std::string error_;
   std::string warning_;
   std::size_t errors_ = 0;
   std::size_t warnings_ = 0;
};

} // namespace Explorer
