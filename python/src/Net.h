// The net under the module: an assertion that fails inside it is an exception.
#pragma once

#include <stdexcept>

namespace Vorn::Python {

// A failed assertion, in its own words.
class Misuse : public std::logic_error {
public:
   using std::logic_error::logic_error;
};

// Breaks a contract of the library on purpose, for the test of the net.
void failAssertion();

} // namespace Vorn::Python
