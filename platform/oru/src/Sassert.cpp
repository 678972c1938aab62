// The delivery of a failed assertion's message.
#include <Oru/Sassert.h>

#include "Sink.h"

namespace Oru {

namespace {

using SassertSink = Sink<const std::string&, const std::string&>;

// Never destroyed: an assertion may fail during the process's exit.
SassertSink& sassertSink() {
   static SassertSink* const sink = new SassertSink;
   return *sink;
}

} // namespace

SassertHelper::SassertHelper( const char* expression ) : expression_( expression ) {}

SassertHelper::~SassertHelper() {
   try {
      const std::string message = message_.str();
      if( const auto deliver = sassertSink().function() ) {
         deliver( expression_, message );
      } else {
         writeToStandardError( "assertion " + std::string( expression_ ) + ": " + message + '\n' );
      }
   } catch( ... ) {
      // The assertion itself follows; a message that can't be delivered must not get in its way.
   }
}

void sassertSinkIs(
   std::function<void( const std::string& expression, const std::string& message )> sink ) {
   sassertSink().functionIs( std::move( sink ) );
}

} // namespace Oru
