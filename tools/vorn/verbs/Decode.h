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
   std::optional<PairText> pair;   // nothing where each image says it itself
   std::vector<std::string> image; // its text, in any number of pieces
   std::string path;               // of a file of images, "-" for standard input; else empty
   ImageFormat format = ImageFormat::automatic;
   DecodeForm form = DecodeForm::text;
   std::optional<std::string> changedFrom; // the image that the others are compared with
};

// Prints the fields of the image, or of those of the file. What comes before a bad image is given
// to `output` before the Error is thrown.
void decode( const DecodeArguments& arguments, Output& output );

} // namespace Vorn
