# From what a verb's --help prints to its part of the manual page.
function plain( text ) {
   gsub( /\\/, "\\e", text )
   gsub( /-/, "\\-", text )
   return text ~ /^[.']/ ? "\\&" text : text
}

# Ends what the last lines are part of.
function finish() {
   if( verbatim ) print ".fi\n.RE"
   verbatim = 0
}

# An option or argument, and what stands after it from column 25 on, unless it reaches that far.
function item( line,   term, rest, value ) {
   term = substr( line, 3 )
   if( substr( line, 24, 1 ) == " " ) {
      term = substr( line, 3, 21 )
      rest = substr( line, 25 )
   }
   sub( / +$/, "", term )
   skipped = term ~ /^-h,/ # explained once for all
   if( skipped ) return
   print ".TP"
   if( match( term, / / ) ) {
      value = substr( term, RSTART + 1 )
      print ".BI " plain( substr( term, 1, RSTART - 1 ) ) " \" " plain( value ) "\""
   } else {
      print ( term ~ /^-/ ? ".B " : ".I " ) plain( term )
   }
   if( rest != "" ) print plain( rest )
}

NR == 1 { print plain( $0 ) "."; next }
/^Usage: / { print ".PP\n.B " plain( substr( $0, 8 ) ); next }
/^(Arguments|Options|Verbs):$/ { list = $0 != "Verbs:"; listed = 1; next }
$0 == "" { finish(); listed = skipped = 0; begins = 1; next }
listed && !list { next }
listed && /^  [^ ]/ { item( $0 ); next }
listed { sub( /^ +/, "" ); if( !skipped ) print plain( $0 ); next }
/^Chip types: / { skipped = 1 } # once for all, too
skipped { next }
/^ / {
   if( !verbatim ) print ".PP\n.RS 4\n.nf"
   verbatim = 1
   print plain( substr( $0, 3 ) )
   begins = 0
   next
}
{
   finish()
   if( begins ) print ".PP"
   begins = 0
   print plain( $0 )
}
END { finish() }
