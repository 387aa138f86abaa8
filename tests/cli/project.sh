#!/usr/bin/env bash
# "ko project": forward and inverse against PROJ's proj(1) on the same
# systems, block handling, pass-through columns, CSV, bad lines and bad
# systems.  Usage: project.sh <path to ko>
ko=${1:?usage: project.sh <path to ko>}
source "$(dirname "$0")/support.bash"

# A 5 x 5 grid of points, 0.5 degree apart, around a centre.
grid() {
  awk -v lon="$1" -v lat="$2" 'BEGIN {
    for (i = -2; i <= 2; i++) for (j = -2; j <= 2; j++)
      printf "%.4f %.4f\n", lon + 0.5 * i, lat + 0.5 * j }'
}

# Systems of several projection families and units: code, grid centre.
# Forward within 1 mm of proj(1); inverse within 1e-9 degree.
while read -r code lon lat; do
  grid "$lon" "$lat" >"$work/in"
  # shellcheck disable=SC2046
  proj -f %.6f $(proj_string "$code") <"$work/in" | tr '\t' ' ' >"$work/expected"
  run_ko "$work/in" project -p 6 "$code"
  expect_status "forward $code" 0
  echo "$out" >"$work/got"
  numbers_agree "forward $code against proj" 0.001 "$work/got" "$work/expected"
  # Inverse: within 1e-8 degree (about 1 mm) of proj -I, whose series for
  # some projections stop at that level, and within 1e-9 degree of the
  # grid the points came from.
  # shellcheck disable=SC2046
  proj -I -f %.12f $(proj_string "$code") <"$work/expected" | tr '\t' ' ' >"$work/expected_inv"
  run_ko "$work/expected" project --inverse -p 12 "$code"
  expect_status "inverse $code" 0
  echo "$out" >"$work/got_inv"
  numbers_agree "inverse $code against proj" 1e-8 "$work/got_inv" "$work/expected_inv"
  numbers_agree "inverse $code back to the grid" 1e-9 "$work/got_inv" "$work/in"
done <<'EOF'
32633 15 50
27700 -2 53
3035 10 52
2154 3 46.5
5070 -96 38
32661 0 85
3031 0 -80
2056 8 46.8
3857 14 50
31466 6 50
2193 173 -41
3112 134 -25
29193 -45 -20
2927 -120 47
3078 -86 45
EOF

# Default precision: 3 decimals for metres, 9 for degrees.
printf '15 50\n' >"$work/one"
run_ko "$work/one" project 32633
expect_match "3 decimals forward" '^[0-9]+\.[0-9]{3} [0-9]+\.[0-9]{3}$' "$out"
echo "$out" >"$work/xy"
run_ko "$work/xy" project -I 32633
expect_match "9 decimals inverse" '^[0-9]+\.[0-9]{9} [0-9]+\.[0-9]{9}$' "$out"

# Extra fields pass through; comments and blank lines are copied; a comma
# separates as well as blanks.
printf '15 50 Prague 1\n# a comment\n\n15,50,x\n' >"$work/in"
run_ko "$work/in" project 32633
expect_status "pass-through" 0
mapfile -t lines <<<"$out"
expect_equal "fields after the point" "Prague 1" "$(echo "${lines[0]}" | cut -d' ' -f3-)"
expect_equal "comment copied" "# a comment" "${lines[1]}"
expect_equal "blank line copied" "" "${lines[2]}"
expect_equal "comma-separated point" "$(echo "${lines[0]}" | cut -d' ' -f1-2) x" "${lines[3]}"

# Bad lines: reported with their numbers, kept in place as '*', the
# others converted, status 1.
printf '14 50\nabc def\n15 95\n16 51 tail\nonly\n-180 -95\n17 52\n' >"$work/in"
run_ko "$work/in" project 32633
expect_status "bad lines" 1
for n in 2 3 5 6; do expect_in "line $n reported" "line $n:" "$err"; done
for n in 1 4 7; do expect_not_in "line $n not reported" "line $n:" "$err"; done
expect_in "latitude beyond the pole" "beyond the poles" "$err"
mapfile -t lines <<<"$out"
expect_equal "seven output lines" 7 "${#lines[@]}"
expect_equal "unreadable line" "* *" "${lines[1]}"
expect_equal "pole line" "* *" "${lines[2]}"
printf '14 50\n16 51\n17 52\n' >"$work/good"
# shellcheck disable=SC2046
proj -f %.3f $(proj_string 32633) <"$work/good" | tr '\t' ' ' >"$work/expected"
printf '%s\n%s\n%s\n' "${lines[0]}" "$(echo "${lines[3]}" | cut -d' ' -f1-2)" "${lines[6]}" >"$work/got"
numbers_agree "good lines among bad ones" 0.001 "$work/got" "$work/expected"
expect_equal "tail kept after a good point" "tail" "$(echo "${lines[3]}" | cut -d' ' -f3)"

# A point outside the projection's domain (the antipode of the Lambert
# azimuthal centre) is reported; proj(1) refuses it too.
printf '10 52\n-170 -52\n' >"$work/in"
run_ko "$work/in" project 3035
expect_status "antipode" 1
expect_in "antipode reported" "line 2: outside the projection's domain" "$err"
# shellcheck disable=SC2046
check "proj refuses the antipode too" \
  bash -c "echo '-170 -52' | proj $(proj_string 3035) | grep -q '\*'"

# More than one block (4096 points): every point converted in order, a bad
# line deep inside reported with its own number.
awk 'BEGIN { for (i = 0; i < 10000; i++) printf "%.6f %.6f\n", 12 + (i % 600) / 100, 1 + i / 125 }' \
  >"$work/many"
sed '5000s/.*/5000 is not a point/' "$work/many" >"$work/many_bad"
run_ko "$work/many_bad" project -p 4 32633
expect_status "10000 lines" 1
expect_equal "one report" 1 "$(echo "$err" | grep -c 'line ')"
expect_in "line 5000 reported" "line 5000:" "$err"
# shellcheck disable=SC2046
proj -f %.4f $(proj_string 32633) <"$work/many" | tr '\t' ' ' | sed '5000s/.*/* * not a point/' \
  >"$work/expected"
echo "$out" >"$work/got"
numbers_agree "10000 lines against proj" 0.001 "$work/got" "$work/expected"

# CSV: header kept, columns added, quoted fields, named and numbered columns.
cat >"$work/in.csv" <<'EOF'
name,lon,lat
"Prague, CZ",14.42,50.09
Bad,x,50
Brno,16.61,49.2
EOF
run_ko "$work/in.csv" project --csv 32633
expect_status "csv" 1
mapfile -t lines <<<"$out"
expect_equal "csv header" "name,lon,lat,x,y" "${lines[0]}"
expect_in "csv quoted field kept" '"Prague, CZ",14.42,50.09,' "${lines[1]}"
expect_equal "csv bad row" "Bad,x,50,," "${lines[2]}"
expect_in "csv bad row reported" "line 3:" "$err"
printf '14.42 50.09\n16.61 49.2\n' >"$work/pts"
# shellcheck disable=SC2046
proj -f %.3f $(proj_string 32633) <"$work/pts" | tr '\t' ' ' >"$work/expected"
printf '%s\n%s\n' "${lines[1]}" "${lines[3]}" | awk -F, '{ print $(NF-1), $NF }' >"$work/got"
numbers_agree "csv values" 0.001 "$work/got" "$work/expected"

printf 'id;E;N\n1;%s\n' "$(head -1 "$work/expected" | tr ' ' ';')" >"$work/in.csv"
run_ko "$work/in.csv" project -I --csv --delimiter ';' --x-column E --y-column N 32633
expect_status "csv inverse" 0
mapfile -t lines <<<"$out"
expect_equal "csv inverse header" "id;E;N;lon;lat" "${lines[0]}"
echo "${lines[1]}" | awk -F';' '{ print $4, $5 }' >"$work/got"
echo "14.42 50.09" >"$work/expected"
numbers_agree "csv inverse values" 1e-8 "$work/got" "$work/expected"

printf 'name,lon,lat,N\nPrague,14.42,50.09,old\n' >"$work/in.csv"
run_ko "$work/in.csv" project --csv --x-column E --y-column N 32633
expect_equal "csv output columns named: E added, N overwritten" \
  "name,lon,lat,N,E" "$(echo "$out" | head -1)"
# shellcheck disable=SC2046
expect_equal "csv output columns values" \
  "Prague,14.42,50.09,$(echo 14.42 50.09 | proj -f %.3f $(proj_string 32633) | awk '{ print $2 "," $1 }')" \
  "$(echo "$out" | sed -n 2p)"

printf '50.09,a,14.42\n' >"$work/in.csv"
run_ko "$work/in.csv" project --csv --no-header --lon-column 3 --lat-column 1 32633
expect_status "csv without header" 0
echo "$out" | awk -F, '{ print $4, $5 }' >"$work/got"
head -1 "$work/pts" | proj -f %.3f $(proj_string 32633) | tr '\t' ' ' >"$work/expected"
numbers_agree "csv without header values" 0.001 "$work/got" "$work/expected"
expect_equal "csv without header fields kept" "50.09,a,14.42" "$(echo "$out" | cut -d, -f1-3)"

printf 'a,b\n1,2\n' >"$work/in.csv"
run_ko "$work/in.csv" project --csv 32633
expect_status "csv without coordinate columns" 2
expect_in "missing column named" "--lon-column" "$err"

# The system as WKT text, as a WKT file and by name gives the same output.
"$ko" info -q 32633 >"$work/utm.prj"
grid 15 50 >"$work/in"
run_ko "$work/in" project 32633
by_code=$out
run_ko "$work/in" project "$work/utm.prj"
expect_equal "WKT file" "$by_code" "$out"
run_ko "$work/in" project "$(cat "$work/utm.prj")"
expect_equal "WKT text" "$by_code" "$out"
run_ko "$work/in" project "WGS 84 / UTM zone 33N"
expect_equal "EPSG name" "$by_code" "$out"
run_ko /dev/null project --input "$work/in" 32633
expect_equal "--input" "$by_code" "$out"
run_ko /dev/null project 32633 "$work/in"
expect_equal "input file operand" "$by_code" "$out"

# Bad systems and usage: status 2 with the library's own message.
run_ko /dev/null project 999999
expect_status "unknown code" 2
expect_in "unknown code message" "Invalid projected CS factory code: 999999" "$err"
run_ko /dev/null project 4326
expect_status "geographic code" 2
expect_in "geographic code message" "not a projected coordinate system" "$err"
run_ko /dev/null project 'PROJCS["x",GEOGCS["y"]]'
expect_status "bad WKT" 2
expect_in "bad WKT message" "Missing datum in WKT string" "$err"
run_ko /dev/null project "No such grid anywhere"
expect_status "unknown name" 2
expect_in "unknown name message" "Name not found" "$err"
run_ko /dev/null project 32633 "$work/does-not-exist"
expect_status "missing input file" 2
expect_in "missing input file message" "cannot open" "$err"
run_ko /dev/null project
expect_status "no system" 2
run_ko /dev/null project --precision 18 32633
expect_status "precision out of range" 2
run_ko /dev/null project --frobnicate 32633
expect_status "unknown option" 2
expect_in "unknown option named" "--frobnicate" "$err"

# A slow producer: the first point comes out before the input ends, and a
# terminal on standard error shows progress once a second has passed.
first=$( (echo 15 50; sleep 4; echo 15 51) | "$ko" project 32633 2>/dev/null | (
  read -r -t 3 line
  echo "$line"
))
check "output before the input ends" [ -n "$first" ]
script -qc "sh -c '(echo 15 50; sleep 1.5; echo 15 51; sleep 0.3; echo 15 52) | $ko project 32633 >/dev/null'" \
  /dev/null >"$work/tty" 2>&1
check "progress on a terminal" grep -q 'ko: [0-9]* lines' "$work/tty"
(echo 15 50; sleep 1.5; echo 15 51; sleep 0.3; echo 15 52) | "$ko" project 32633 >/dev/null \
  2>"$work/quiet"
check "no progress when standard error is a file" [ ! -s "$work/quiet" ]

finish
