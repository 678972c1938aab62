// What becomes of an error in one of many inputs: it ends the run, or is reported and counted.
#pragma once

#include <Kelvar/Types.h>

#include <string_view>

namespace Vorn {

class Error;
class Output;
class Progress;

// The errors of a run over many inputs.
class Failures {
public:
   // `keepsGoing`: the run goes on after an error. Output that precedes an error is written before
   // it, on a terminal, too.
   Failures( bool keepsGoing, Output& output, Progress* progress = nullptr )
      : keepsGoing_( keepsGoing ), output_( output ), progress_( progress ) {}

   // Throws the error if it ends the run.
   void take( const Error& error );

   // Throws HasFailed if there were errors, after a line that says how many, and what was done.
   void finish( std::string_view done ) const;

   U64 count() const { return count_; }

private:
   void makeRoom() const;

   bool keepsGoing_;
   Output& output_;
   Progress* progress_;
   U64 count_ = 0;
};

} // namespace Vorn
