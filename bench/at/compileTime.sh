#!/bin/sh
# compileTime.sh <compiler>...: processor seconds to compile <Hardware/at/LifTable.h>, and for each
# further pair on which all fields are read, written and composed.
cd "$(dirname "$0")/../.."
includes="-Iinclude $(printf -- '-I%s ' platform/*/include)"
seconds() { # compiler, pairs: the least of three
   for _ in 1 2 3; do
      {
         echo '#include <Hardware/at/LifTable.h>'
         if [ "$2" -gt 0 ]; then
            echo 'template<unsigned variant> void use( U8* entry ) {
               using Lif = Hardware::At<Hardware::LifTable, Hardware::BCM88690_B0, variant>;
               Lif lif( entry, 80 );
               lif.compose( lif.fields() );'
            sed -nE 's/^HARDWARE_FIELD\( ([^,]+), ([^,]+), .*/if constexpr( requires { lif.\2(); } ) {\
               lif.\2Is( static_cast<\1>( lif.\2() + 1 ) ); }/p' include/Hardware/fields/LifTable.def
            echo '}'
            for variant in $(printf '0 1 3 4 6 7 8 9 10 11' | cut -d' ' -f"1-$2"); do
               echo "template void use<$variant>( U8* );"
            done
         fi
      } | bash -c "TIMEFORMAT=%U; time $1 -std=c++20 -O2 $includes -x c++ -c - -o /dev/null" 2>&1
   done | sort -n | head -1
}
for compiler; do
   alone=$(seconds "$compiler" 0) one=$(seconds "$compiler" 1) ten=$(seconds "$compiler" 10)
   echo "$compiler $alone $one $ten" |
      awk '{ printf "%s: the header %s s, with one pair %s s, each further pair %.2f s\n",
             $1, $2, $3, ( $4 - $3 ) / 9 }'
done
