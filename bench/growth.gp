# Draws what ./run bench --growth FILE measured:
#     gnuplot -c bench/growth.gp FILE docs/pictures/performance-growth.svg
set terminal svg size 1000,460 font "sans-serif,13" background "white"
set output ARG2
set datafile separator ","
set logscale x
set xtics (1, 3, 12, 50, 150, 500)
set yrange [0:*]
set grid ytics lc rgb "#dddddd"
set key outside right center samplen 4 spacing 1.1 font ",11"
set xlabel "megapixels"
set ylabel "nanoseconds per pixel"

operations = "'brightness in place' 'brightness into a new picture' 'sepia into a new picture' multiply memcpy"
colour(i) = word("#0072b2 #56b4e9 #d55e00 #009e73 #888888", i)
of(operation, tasks) = sprintf("< awk -F, -v operation='%s' -v tasks=%d '$1 == operation && $2 == tasks' '%s'", operation, tasks, ARG1)
plot for [tasks = 1:2] for [i = 1:words(operations)] of(word(operations, i), tasks) using 3:4 with linespoints \
    lw 2 pt 7 ps 0.5 dt tasks lc rgb colour(i) title sprintf("%s, %d task%s", word(operations, i), tasks, tasks > 1 ? "s" : "")
