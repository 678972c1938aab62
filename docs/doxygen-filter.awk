# Doxygen's input filter: prints a public header with documentation in place of its comments, and
# with the text that it includes into its class, which Doxygen would leave out. The accessors have a
# page of their own for each class (docs/accessors.awk), which the class links.
#
#    awk -v folder=include -f docs/doxygen-filter.awk include/Hardware/LifTable.h

# The comment before `line`. The first comment of a header is about the file. In included text, a
# comment before an empty line or a macro is about the class, except for the first paragraph, which
# is about the inclusion.
function printComment( line, atTop, isHeader ) {
   if( comment == "" ) {
      return
   }
   if( isHeader && atTop ) {
      print "/// @file"
   } else if( !isHeader && ( atTop || line ~ /^#define/ ) ) {
      if( atTop ) {
         comment = index( comment, "///\n" ) ? substr( comment, index( comment, "///\n" ) + 4 ) : ""
      }
      print "/// @class Hardware::" view "\n/// @details"
   }
   printf "%s", comment
   comment = ""
}

# The enumerators of the list beside the header, with the comments on their lines.
function printChipTypes( header,   list, line, cell ) {
   list = header
   sub( /[^\/]*$/, "ChipTypes.def", list )
   while( ( getline line < list ) > 0 ) {
      if( line ~ /^HARDWARE_CHIP_TYPE/ ) {
         split( line, cell, / *[(,)] */ )
         sub( /.*\)/, "", line )
         sub( /\/\//, "///<", line )
         print cell[2] " = " cell[3] "," line
      }
   }
}

function printFile( file, isHeader,   line, atTop ) {
   atTop = 1
   while( ( getline line < file ) > 0 ) {
      if( line ~ /clang-format/ ) {
         continue
      }
      if( sub( /^ *\/\//, "&/", line ) ) {
         if( !sub( /\/\/\/   /, "& ", line ) ) { # code, which Doxygen wants indented by four
            gsub( /<Hardware\/[a-zA-Z\/]*<Class>[.]h>/, "`&`", line )
            gsub( /``/, "`", line )
         }
         comment = comment line "\n"
         continue
      }
      printComment( line, atTop, isHeader )
      atTop = 0
      if( line ~ /^#define HARDWARE_VIEW / ) {
         view = substr( line, 23 )
      } else if( line == "#include <Hardware/detail/DeclareFields.inc>" ) {
         continue # once more the same fields, as types
      } else if( line ~ /^#include <.*\.inc>$/ ) {
         if( line !~ /AtClass/ ) {
            printFile( folder "/" substr( line, 11, length( line ) - 11 ), 0 )
         }
      } else if( line ~ /^#include <Hardware\/(fields\/Catalogue|detail\/Classes)[.]def>/ ) {
         continue # listed in docs/reference/
      } else if( line ~ /^#define HARDWARE_CHIP_TYPE/ ) {
         continue
      } else if( line ~ /^#include <Hardware\/ChipTypes[.]def>/ ) {
         printChipTypes( file )
      } else if( line ~ /^#define HARDWARE_WRITTEN_OUT/ ) {
         print "/// @class Hardware::" view "\n/// @details"
         print "/// All fields with their accessors and places: @ref " view "-accessors."
         while( line !~ /^#undef HARDWARE_WRITTEN_OUT/ && ( getline line < file ) > 0 ) {
         }
      } else {
         gsub( /HARDWARE_VIEW/, view, line )
         sub( /[;,] +\/\//, "&/<", line )
         print line
      }
   }
   close( file )
}

BEGIN {
   printFile( ARGV[1], 1 )
   exit
}
