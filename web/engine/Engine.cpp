// The functions that the page calls.
#include "Session.h"

#include <Vorn/Error.h>

#include <cstddef>
#include <exception>
#include <string>

#include <emscripten/emscripten.h>

namespace {

using Explorer::Json;

std::string& bytes() {
   static std::string bytes;
   return bytes;
}

Json answerTo( const Json& question ) {
   static Explorer::Session session;
   return session.answer( question["ask"].get<std::string>(), question, bytes() );
}

} // namespace

// Room for the bytes of a text or file that go with the next questions.
extern "C" EMSCRIPTEN_KEEPALIVE char* explorerRoom( std::size_t size ) {
   bytes().resize( size );
   bytes().shrink_to_fit();
   return bytes().data();
}

// Answers a question in JSON: { "answer": ... }, or { "error": "what is wrong" }. The answer is
// valid until the next call.
extern "C" EMSCRIPTEN_KEEPALIVE const char* explorerAnswer( const char* question ) {
   static std::string text;
   Json reply;
   try {
      reply["answer"] = answerTo( Json::parse( question ) );
   } catch( const Vorn::Error& error ) {
      reply["error"] = error.what();
   } catch( const std::exception& exception ) {
      reply["error"] = std::string( "internal error: " ) + exception.what();
   }
   text = reply.dump( -1, ' ', false, Json::error_handler_t::replace );
   return text.c_str();
}
