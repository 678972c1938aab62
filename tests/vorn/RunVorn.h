// Runs the real program and hands back what it wrote and how it ended.
#pragma once

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
// instead, whose contents are then not handed back.
Outcome vorn( const std::vector<std::string>& arguments, std::string_view input = {},
              const char* outputFile = nullptr );

// The first line that vorn answers to `line` while its standard input stays open.
std::string answerTo( const std::vector<std::string>& arguments, std::string_view line );

// Expects an exit status of 1, nothing on standard output, and on standard error this one line.
void expectRefused( const std::vector<std::string>& arguments, const std::string& message,
                    std::string_view input = {} );

} // namespace Testing
