// Runs the real program and hands back what it wrote and how it ended.
#pragma once

#include "support/Lines.h"

#include <string>
#include <string_view>
#include <vector>

namespace Testing {

struct Outcome {
   std::string out;
   std::string err;
   int status; // of its exit; 128 and the signal's number for a process that was killed
};

// Runs vorn with these arguments and this standard input. Its standard output may be a file
// instead, whose contents are then not returned.
Outcome vorn( const std::vector<std::string>& arguments, std::string_view input = {},
              const char* outputFile = nullptr );

// The same for another program, by its path or its name.
Outcome run( const std::string& program, const std::vector<std::string>& arguments,
             std::string_view input = {}, const char* outputFile = nullptr );

// The first line that vorn answers to `line` while its standard input stays open.
std::string answerTo( const std::vector<std::string>& arguments, std::string_view line );

// Runs vorn with a terminal of that many columns as its standard error, and as its standard output,
// too, if `outputToo`. Its standard input is a pipe that brings these lines, each after the answer
// to the one before. `err` is what the terminal is sent.
Outcome onTerminal( const std::vector<std::string>& arguments,
                    const std::vector<std::string>& lines, unsigned short columns,
                    bool outputToo = false );

// Runs vorn with pipes that don't wait as its standard input and output: the first is empty and the
// second full until vorn waits for them or has ended. The lines then come each after the answer to
// the one before.
Outcome throughPipesThatDontWait( const std::vector<std::string>& arguments,
                                  const std::vector<std::string>& lines );

// Each of vorn's writes to standard error.
std::vector<std::string> errorWrites( const std::vector<std::string>& arguments,
                                      std::string_view input = {} );

// Expects an exit status of 0, this on standard output, and nothing on standard error.
void expectPrinted( const std::vector<std::string>& arguments, const std::string& output,
                    std::string_view input = {} );

// Expects an exit status of 1, nothing on standard output, and on standard error this one line.
void expectRefused( const std::vector<std::string>& arguments, const std::string& message,
                    std::string_view input = {} );

} // namespace Testing
