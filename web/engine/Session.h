// What the page works on: the entry that is shown, and the dumps that are loaded.
#pragma once

#include "Entries.h"

#include <Vorn/BitOrder.h>
#include <Vorn/Difference.h>
#include <Vorn/Layout.h>
#include <Vorn/Notation.h>
#include <Vorn/Search.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Explorer {

using Json = nlohmann::ordered_json;

// Each function takes the page's question as JSON and returns the answer. What is wrong with the
// input is a Vorn::Error, and nothing has changed then.
class Session {
public:
   Session();

   // Answers the question of that name; `bytes` are those of a file that goes with it.
   Json answer( std::string_view name, const Json& question, std::string_view bytes );

private:
   Json catalogue( const Json&, std::string_view );
   Json open( const Json& question, std::string_view );
   Json read( const Json& question, std::string_view text );
   Json view( const Json& question, std::string_view );
   Json set( const Json& question, std::string_view );
   Json flip( const Json& question, std::string_view );
   Json address( const Json& question, std::string_view );
   Json copy( const Json& question, std::string_view );
   Json picture( const Json&, std::string_view );
   Json comparePair( const Json& question, std::string_view );
   Json compareImage( const Json& question, std::string_view text );
   Json search( const Json& question, std::string_view );
   Json load( const Json& question, std::string_view bytes );
   Json loadOther( const Json& question, std::string_view bytes );
   Json unload( const Json&, std::string_view );
   Json entries( const Json& question, std::string_view );
   Json pick( const Json& question, std::string_view );

   Entries readImages( std::string_view text ) const;
   Entries readDump( std::string_view bytes, const std::string& name ) const;
   void show( const Vorn::Layout& layout, std::span<const U8> image );
   Json description() const;
   Json viewOf( const Json& question, const std::string& message ) const;
   Json dumpFacts() const;
   void compareDumps();
   Vorn::EntryChange changeOf( std::size_t index );
   Json rowOf( std::size_t index );
   Json change( const Vorn::Field& field, std::span<const U8> before,
                std::span<const U8> after ) const;
   std::string record( const Json& question ) const;
   Json places( std::string_view text ) const;

   Vorn::Layout layout_;
   Vorn::BitOrder order_;  // of its fields
   std::vector<U8> image_; // all bytes of the entry
   Entries entries_;
   Entries other_; // the dump to compare with
   Vorn::EntryComparison comparison_;
   std::vector<std::size_t> changed_; // entries that differ
   Vorn::Search search_;
};

} // namespace Explorer
