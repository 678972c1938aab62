// A sample for the test of ELF files: built once like the library, once without any of that.
#include <cstdlib>
#include <cstring>

extern "C" __attribute__( ( visibility( "default" ) ) ) int sample( const char* text );

extern "C" int sample( const char* text ) {
   char copy[32];
   std::strcpy( copy, text );
   return std::atoi( copy );
}

#ifdef SAMPLE_PROGRAM
int main( int, char** arguments ) { return sample( arguments[0] ); }
#endif

#ifdef SAMPLE_INITIALISER
int sampleNumber = std::rand();
#endif
