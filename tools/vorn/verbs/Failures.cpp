// What becomes of an error in one of many inputs: it ends the run, or is reported and counted.
#include "verbs/Failures.h"

#include "CommandLine.h"
#include "Io.h"
#include "Progress.h"
#include "Terminal.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <string>

namespace Vorn {

void Failures::take( const Error& error ) {
   if( !keepsGoing_ ) {
      throw error;
   }
   makeRoom();
   printError( error );
   ++count_;
}

void Failures::finish( std::string_view done ) const {
   if( count_ > 0 ) {
      makeRoom();
      note( countOf( count_, "error" ) + ", " + std::string( done ) );
      throw HasFailed();
   }
}

void Failures::makeRoom() const {
   output_.flush();
   if( progress_ ) {
      progress_->wipe();
   }
}

} // namespace Vorn
