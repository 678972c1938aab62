// Where entries have been composed, to find those that are composed twice.
#pragma once

#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace Vorn {

// Remembers a line for each address of a table's memory, whatever the variant of the entry there.
// Entries at neighbouring addresses take 4 bytes each and a little more, an entry far from all
// others about 120.
class Places {
public:
   // The lines added from now on are of this file.
   void begin( const std::string& file );

   // Nothing if no entry has been added there, else where the first one was: "entries.csv:3".
   // `line` counts from 1 in the file. The layout has to outlive this object.
   std::optional<std::string> add( const Layout& layout, const EntryIndex& index,
                                   const Address& address, U64 line );

private:
   // The lines of neighbours, of all files; 0 where there is none.
   static constexpr U32 pageEntries = 16;
   using Page = std::array<U32, pageEntries>;
   using Pages = std::unordered_map<U32, Page>; // by the address divided by their number

   // Table, chip type, array element, instance, and how to access it.
   using Memory = std::tuple<std::string_view, U8, U64, U64, U8, U8>;

   // The same of one layout, which is compared more quickly.
   struct Bank {
      const Layout* layout = nullptr;
      U64 array = 0;
      U64 identifier = 0;
      U8 accessType = 0;
      U8 destBlock = 0;

      friend bool operator==( const Bank&, const Bank& ) = default;
   };

   // A file, and how many lines the ones before it have.
   struct File {
      std::string name;
      U64 before;
   };

   std::string placeOf( U32 line ) const;

   std::map<Memory, Pages> memories_;
   Bank lastBank_;
   Pages* last_ = nullptr; // those of lastBank_
   U32 lastPage_ = 0;
   Page* page_ = nullptr; // of lastPage_ in last_
   std::vector<File> files_;
   U64 lines_ = 0; // up to the last one, of all files
};

} // namespace Vorn
