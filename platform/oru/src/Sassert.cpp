// The delivery of a failed assertion's message.
#include <Oru/Sassert.h>

#include "Sink.h"

namespace Oru {

namespace {

constinit Sink<const std::string&, const std::string&> sassertSink;

} // namespace

SassertHelper::SassertHelper( const char* expression ) : expression_( expression ) {}

SassertHelper::~SassertHelper() {
   const Undisturbed undisturbed;
   try {
      const std::string expression = expression_;
      const std::string message = message_.str();
      if( !sassertSink.deliver( expression, message ) ) {
         writeToStandardError( "assertion " + expression + ": " + message + '\n' );
      }
   } catch( ... ) {
      // The assertion itself follows; a message that can't be delivered must not get in its way.
   }
}

void sassertSinkIs(
   std::function<void( const std::string& expression, const std::string& message )> sink ) {
   sassertSink.functionIs( std::move( sink ) );
}

} // namespace Oru
