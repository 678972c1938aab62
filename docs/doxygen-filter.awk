# Doxygen's input filter: prints a public header with documentation in place of its comments, and
# with the text that it includes into its class written out, where Doxygen would leave it out. The
# accessors' own macros stay; each field's row becomes a group of members with the field's names.
#
#    awk -v include=include -f docs/doxygen-filter.awk include/Hardware/LifTable.h

# "HARDWARE_FIELD( U8, vsi, Vsi )": its arguments into argument[1] and on.
function splitRow( row ) {
   sub( /^[A-Z_]+\( /, "", row )
   sub( / \).*/, "", row )
   split( row, argument, /, / )
}

function readCatalogue(   file, row ) {
   file = include "/Hardware/fields/Catalogue.def"
   while( ( getline row < file ) > 0 ) {
      if( row ~ /^HARDWARE_FIELD_ID\(/ ) {
         splitRow( row )
         catalogue[++catalogueRows] = row " ///< `" argument[3] "`"
         names[argument[2]] = "`" argument[3] "`, identifier " argument[1]
      }
   }
   close( file )
}

function printCatalogue(   number ) {
   for( number = 1; number <= catalogueRows; ++number ) {
      print catalogue[number]
   }
}

function printFields(   file, row ) {
   file = include "/" fields
   while( ( getline row < file ) > 0 ) {
      if( row ~ /^HARDWARE_(FIELD|WIDE|TAG)\(/ ) {
         splitRow( row )
         print "/// @name " argument[2]
         print "/// " names[argument[2]] ( row ~ /^HARDWARE_TAG/ ? ", read-only." : "." )
         print "/// @{"
         print row
         print "/// @}"
      }
   }
   close( file )
}

# The comment gathered before `line`. What a header begins with is about the file; what stands in
# included text before nothing, or before a macro, is about the class, but for the first paragraph,
# which speaks to the header that includes it.
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

function printFile( file, isHeader,   line, atTop ) {
   atTop = 1
   while( ( getline line < file ) > 0 ) {
      if( line ~ /clang-format/ ) {
         continue
      }
      if( sub( /^ *\/\//, "&/", line ) ) {
         sub( /\/\/\/   /, "& ", line ) # code, which Doxygen wants indented by four
         comment = comment line "\n"
         continue
      }
      printComment( line, atTop, isHeader )
      atTop = 0
      if( line ~ /^#define HARDWARE_VIEW / ) {
         view = substr( line, 23 )
      } else if( line ~ /^#define HARDWARE_FIELDS / ) {
         fields = substr( line, 26, length( line ) - 26 )
      } else if( line == "#include <Hardware/detail/DeclareFields.inc>" ) {
         continue # once more the same fields, as types
      } else if( line ~ /^#include <.*\.inc>$/ ) {
         printFile( include "/" substr( line, 11, length( line ) - 11 ), 0 )
      } else if( line == "#include HARDWARE_FIELDS" ) {
         printFields()
      } else if( line == "#include <Hardware/fields/Catalogue.def>" ) {
         printCatalogue()
      } else {
         gsub( /HARDWARE_VIEW/, view, line )
         sub( /[;,] +\/\//, "&/<", line )
         print line
      }
   }
   close( file )
}

BEGIN {
   readCatalogue()
   printFile( ARGV[1], 1 )
   exit
}
