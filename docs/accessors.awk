# Writes the accessors of a class out, with where each field lies, from the class's datasheet:
#
#    awk -v form=header -f docs/accessors.awk include/Hardware/fields/LifTable.def \
#        docs/reference/LifTable.md
#
# form=header: <Hardware/accessors/LifTable.inc>, for the view; form=at: <Hardware/accessors/at/
# LifTable.inc>, for At, first the readers and then the writers; form=page: for Doxygen.
# Fails if the datasheet has other fields than the class.
#
# The table "Fields" of a datasheet has a row for each field, in declared order:
# | `name` | identifier | `HARDWARE_NAME` | `type`, read-only | bits on chip types: variants<br>... |

function declare( declaration ) {
   if( form == "header" ) {
      print about
   }
   print ( form == "page" ? "    " : "" ) declaration ";"
}

function printForAt( name, Name, type, readOnly ) {
   print about "\nconstexpr " type " " name "() const HARDWARE_GETTER( " type ", " name " )"
   print about "\nstatic constexpr U16 " name "Len() HARDWARE_LEN( " name " )"
   print about "\nstatic constexpr U16 " name "Offset() HARDWARE_OFFSET( " name " )"
   print about "\nstatic constexpr bool is" Name "Valid() HARDWARE_VALID( " name " )"
   if( readOnly == "" ) {
      writers = writers about "\nconstexpr void " name "Is( AtParameter<" type "> value ) HARDWARE_SETTER( " \
                type ", " name " )\n" about "\nconstexpr void " name "Mask() HARDWARE_MASK( " name " )\n"
   }
}

function printField( name, identifier, hardwareName, type, readOnly, places,   Name, argument ) {
   Name = toupper( substr( name, 1, 1 ) ) substr( name, 2 )
   argument = type ~ /^(Raw|U64)/ ? "const " type "&" : type
   if( form != "page" ) {
      gsub( /<br>/, " | ", places )
      about = "/// `" hardwareName "`" readOnly ". Bits on chip types: variants -- " places
   } else {
      printf "\n## %s {#%s-%s}\n\n", name, class, name
      printf "`%s`, identifier %s%s; [datasheet](#%s-datasheet).\n\n", hardwareName, identifier, readOnly,
             class
   }
   if( form == "at" ) {
      printForAt( name, Name, type, readOnly )
      return
   }
   declare( type " " name "() const" )
   if( readOnly == "" ) {
      declare( "void " name "Is( " argument " value )" )
      declare( "void " name "Mask()" )
   }
   declare( "U16 " name "Len() const" )
   declare( "U16 " name "Offset() const" )
   declare( "bool is" Name "Valid() const" )
   if( form == "page" ) {
      gsub( /<br>/, " |\n| ", places )
      gsub( / on /, " | ", places )
      print "\n| bits | chip types: variants |\n|---|---|\n| " places " |"
   }
}

/^HARDWARE_(FIELD|WIDE|TAG)\(/ {
   split( $0, cell, / *[(,] */ )
   declared = declared cell[3] " "
}
/^# / {
   class = $2
   if( form != "page" ) {
      print "// The accessors of " class ", written out for editors from its datasheet."
      if( form == "at" ) {
         print "#ifdef HARDWARE_GETTER"
      }
   } else {
      print "# Accessors of " class " {#" class "-accessors}\n\nThe fields of Hardware::" class ","
      print "in declared order, and where each lies. What asserts: see the class."
   }
}
/^## / { inFields = $2 == "Fields" }
inFields && /^\| `/ {
   split( $0, cell, / \| / )
   sub( /^\| /, "", cell[1] )
   sub( / \|$/, "", cell[5] )
   readOnly = sub( /, read-only/, "", cell[4] ) ? ", read-only" : ""
   for( i = 1; i <= 4; ++i ) {
      gsub( /`/, "", cell[i] )
   }
   shown = shown cell[1] " "
   printField( cell[1], cell[2], cell[3], cell[4], readOnly, cell[5] )
}
END {
   if( form == "at" ) {
      print "#else\n" writers "#endif"
   }
   exit shown != declared
}
