# Writes the samples of the guide into the folder given, named <heading>-<number>: the C++ ones as
# programs (.cpp) with what each prints (.txt), command lines with what they print (.console); and all
# changes to the source tree, in their order, as changes.diff, and the commands after them as
# commands.sh.
#
#    awk -v folder=samples -f extract.awk guide.md

# A sample without main() is the body of one, but for its #include lines.
function writeProgram( file,   line, number, isProgram ) {
   isProgram = text ~ /int main\(/
   number = split( text, lines, "\n" )
   for( line = 1; line < number; ++line ) {
      if( isProgram || lines[line] ~ /^#include/ ) {
         print lines[line] >file
      }
   }
   if( !isProgram ) {
      print "int main() {" >file
      for( line = 1; line < number; ++line ) {
         if( lines[line] !~ /^#include/ ) {
            print lines[line] >file
         }
      }
      print "}" >file
   }
   close( file )
}

function writeSample() {
   if( kind == "cpp" ) {
      name = folder "/" heading "-" ++samples[heading]
      writeProgram( name ".cpp" )
   } else if( kind == "text" ) {
      printf "%s", text >( name ".txt" )
      close( name ".txt" )
   } else if( kind == "console" ) {
      name = folder "/" heading "-" ++samples[heading] ".console"
      printf "%s", text >name
      close( name )
   } else if( kind == "diff" ) {
      printf "%s", text >( folder "/changes.diff" )
   } else if( kind == "sh" ) {
      printf "%s", text >( folder "/commands.sh" )
   } else {
      print FILENAME ":" FNR ": a sample of no kind that is tested: " kind >"/dev/stderr"
      failed = 1
   }
}

/^```/ {
   if( kind == "" ) {
      kind = substr( $0, 4 )
      if( kind == "" ) {
         kind = "unnamed"
      }
      text = ""
   } else {
      writeSample()
      kind = ""
   }
   next
}
kind != "" {
   text = text $0 "\n"
   next
}
/^#/ {
   heading = $0
   gsub( /[^A-Za-z0-9]+/, " ", heading )
   gsub( /^ | $/, "", heading )
   gsub( / /, "-", heading )
}
END { exit failed }
