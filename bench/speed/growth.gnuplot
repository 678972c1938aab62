# Draws the cost of an accessor against the size of its class: `growth` is read, `chart` written.
set terminal svg size 960,360 font 'sans-serif,12' background 'white'
set output chart

stats growth using 5 nooutput
set multiplot layout 1,3 title 'What an accessor costs, class by class' margins 0.07,0.98,0.16,0.9 \
   spacing 0.06,0
set yrange [0:1.1 * STATS_max]
set xrange [0:*]
set offsets 0, graph 0.05, 0, 0
set grid ytics linecolor rgb '#dddddd'
set border 3
set tics nomirror

# A class's name is on the axis below its two points.
named( class ) = class eq 'TcamActionTable' || class eq 'IsemMgmtReq' || class eq 'LifTable'
below( class, x ) = named( class ) ? x : NaN

array quantities[3] = ['formats', 'fields', 'chip types']
do for [panel = 1:3] {
   column = panel + 1
   set xlabel quantities[panel]
   if( panel == 1 ) { set ylabel 'nanoseconds' } else { unset ylabel }
   if( panel == 3 ) { set key bottom right } else { unset key }
   # Too many classes share their number of chip types to name one.
   plot growth using column:5 title 'setter' pointtype 7 linecolor rgb '#1b6ca8', \
        growth using column:6 title 'getter' pointtype 6 linecolor rgb '#c8553d', \
        growth using ( panel < 3 ? below( stringcolumn( 1 ), column( column ) ) : NaN ):(0.1):1 \
           notitle with labels rotate left offset 0.7,0 font ',10' textcolor rgb '#666666' noenhanced
}
unset multiplot
