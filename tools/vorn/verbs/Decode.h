// The fields of entry images given as text.
#pragma once

#include "Io.h"
#include "forms/ImagePrinter.h"
#include "verbs/DumpWalk.h"

#include <optional>
#include <string>

namespace Vorn {

struct DecodeArguments : DumpArguments {
   DecodeForm form = DecodeForm::text;
   std::optional<std::string> changedFrom; // the image that the others are compared with
};

// Prints the fields of the images, or of those of the files. The output for the images before a bad
// one is passed to `output` before the Error is thrown. If it keeps going, Errors are reported on
// standard error, and it ends in HasFailed.
void decode( const DecodeArguments& arguments, Output& output );

} // namespace Vorn
