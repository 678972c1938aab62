// The fields of entry images given as text.
#pragma once

#include "Arguments.h"
#include "Io.h"
#include "forms/ImagePrinter.h"

#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <optional>
#include <string>
#include <vector>

namespace Vorn {

struct DecodeArguments {
   std::optional<PairText> pair;   // nothing where each image says it itself; of its variant, too,
                                   // if that is empty
   std::string chip;               // alone, for images that have an address; else empty
   std::vector<std::string> image; // its text, in any number of pieces
   std::vector<std::string> paths; // of files of images, "-" for standard input
   ImageFormat format = ImageFormat::automatic;
   std::string stride = "0"; // bytes from one entry of a dump to the next, 0 if not given
   IndexText first;          // entry of a dump
   bool isStrict = false;    // what would be a warning is an Error
   bool keepsGoing = false;  // after a bad image
   bool printsEmpty = false; // also entries of zeroes that fit no tag
   DecodeForm form = DecodeForm::text;
   std::optional<std::string> changedFrom; // the image that the others are compared with
};

// Prints the fields of the images, or of those of the files. The output for the images before a bad
// one is passed to `output` before the Error is thrown. If it keeps going, Errors are reported on
// standard error, and it ends in HasFailed.
void decode( const DecodeArguments& arguments, Output& output );

} // namespace Vorn
