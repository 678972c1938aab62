// Uses of the library that must work at any moment of the process.
#pragma once

namespace Testing {

// Asks the registry, makes a view, sets and reads a field, and reads the trace line of that on
// standard error. Ends the process with status 1 and a line that names the moment if anything
// isn't as it should be.
void useLibrary( const char* moment );

// A thread that began during main has asked the registry once more.
void threadHasAsked();
// Waits until it has, twice since the call.
void waitForThread();

} // namespace Testing
