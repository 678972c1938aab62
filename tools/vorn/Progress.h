// The progress of a long run, in one line that is redrawn.
#pragma once

#include <Kelvar/Types.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace Vorn {

// The line for `done` of `total`, for example " 45% [========>           ]  451000 entries,
// 300000/s, 0:01 left", which fits into the columns: where they are few, the bar is left out, then
// what follows it. Neither total nor seconds is 0.
std::string progressLine( U64 done, U64 total, U64 entries, double seconds, std::size_t columns );

// Draws the line on standard error if that is a terminal and standard output is none, whose lines
// it would disturb.
class Progress {
public:
   Progress();
   ~Progress(); // wipes the line
   Progress( const Progress& ) = delete;
   Progress& operator=( const Progress& ) = delete;

   // Draws, but not more than ten times a second, and neither before the first nor after the last
   // of `total`, nor if that is 0, which stands for a total that is not known.
   void show( U64 done, U64 total, U64 entries );

   // Wipes the line before something else is written there.
   void wipe();

private:
   using Clock = std::chrono::steady_clock;

   void draw( const std::string& line );

   bool isShown_;
   Clock::time_point begin_ = Clock::now();
   Clock::time_point next_ = begin_; // not to be drawn before this
   std::size_t drawn_ = 0;           // columns of the line that stands there
};

} // namespace Vorn
