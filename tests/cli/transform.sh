#!/usr/bin/env bash
# "ko transform": the transformation chosen (most accurate whose area holds
# the first point, as projinfo lists them), the converted points against
# cct(1) running the same EPSG operations, projected ends against proj(1),
# heights, grids, --via, bad lines and bad systems.
# Usage: transform.sh <path to ko>
ko=${1:?usage: transform.sh <path to ko>}
source "$(dirname "$0")/support.bash"

# The EPSG steps named in the "using ..." report, one "code direction" per
# line (direction 1 for "inverse").
used_steps() {
  echo "$err" | grep '^ko: using ' | sed 's/^ko: using //; s/), then /)\n/g' |
    sed -E 's/^EPSG:([0-9]+) [^ ]+( inverse)? \(.*$/\1 \2/; s/ inverse$/ 1/; s/ $/ 0/'
}

# Runs longitude/latitude pairs (file) through the reported steps with cct,
# which takes and gives EPSG's latitude-first order; writes longitude,
# latitude pairs.
cct_steps() {
  local input=$1 steps=$2
  swap12 <"$input" | awk '{ print $1, $2, 0, 0 }' >"$work/cct_in"
  while read -r code direction; do
    local flag=""
    [ "$direction" = 1 ] && flag="-I"
    # shellcheck disable=SC2086
    cct -d 12 $flag "EPSG:$code" <"$work/cct_in" | awk '{ print $1, $2, 0, 0 }' >"$work/cct_out"
    mv "$work/cct_out" "$work/cct_in"
  done <<<"$steps"
  awk '{ print $2, $1 }' "$work/cct_in"
}

# The most accurate known accuracy among the EPSG transformations that
# projinfo finds between two systems around a point, leaving out those
# whose grid is missing.
best_accuracy() {
  local lon=$3 lat=$4
  projinfo -s "EPSG:$1" -t "EPSG:$2" --spatial-test intersects --hide-ballpark --summary \
    --bbox "$(awk -v x="$lon" -v y="$lat" 'BEGIN { printf "%f,%f,%f,%f", x-1e-3, y-1e-3, x+1e-3, y+1e-3 }')" \
    2>/dev/null | grep '^EPSG:' | grep -v 'grid missing' |
    awk -F', ' '{ sub(/ m$/, "", $3); print $3 }' | sort -g | head -1
}

# Geographic to geographic: the choice and the values, table-driven:
# source, target, first point.
while read -r from to lon lat; do
  awk -v x="$lon" -v y="$lat" 'BEGIN { for (i = 0; i < 5; i++) printf "%.4f %.4f\n", x + 0.1 * i, y - 0.1 * i }' \
    >"$work/in"
  run_ko "$work/in" transform -p 10 --from "$from" --to "$to"
  expect_status "$from to $to" 0
  steps=$(used_steps)
  check "$from to $to names what it used" [ -n "$steps" ]
  reported=$(echo "$err" | sed -nE 's/.*\(accuracy ([0-9.]+) m\)$/\1/p' | head -1)
  if [ "$(echo "$steps" | wc -l)" -eq 1 ]; then
    expected_accuracy=$(best_accuracy "$from" "$to" "$lon" "$lat")
    check "$from to $to: the most accurate at the point ($reported m, projinfo $expected_accuracy m)" \
      awk -v a="$reported" -v b="$expected_accuracy" 'BEGIN { exit !(a + 0 == b + 0) }'
  fi
  cct_steps "$work/in" "$steps" >"$work/expected"
  echo "$out" >"$work/got"
  # 1e-8 degree: cct leaves out a zero Helmert between two spheroids that
  # the library applies (about 0.1 mm).
  numbers_agree "$from to $to against cct" 1e-8 "$work/got" "$work/expected"
done <<'EOF'
4230 4326 3 49.6
4269 4326 -100 40
4267 4269 -100 40
4277 4326 -1 52
4314 4326 10 50
4322 4326 20 10
4272 4326 174.8 -41.3
EOF

# The brief NAD83 case names the catalogue's own record exactly.
printf -- '-100 40\n' >"$work/in"
run_ko "$work/in" transform --from 4269 --to 4326
expect_equal "NAD83 to WGS 84 report" "ko: using EPSG:1188 NAD_1983_To_WGS_1984_1 (accuracy 4 m)" "$err"

# Projected to projected: unproject, datum step, project, against proj -I,
# cct and proj.
printf '500000 5500000\n420000 5400000 name\n' >"$work/in"
run_ko "$work/in" transform -f 23031 -t 32631
expect_status "23031 to 32631" 0
steps=$(used_steps)
# shellcheck disable=SC2046
cut -d' ' -f1-2 "$work/in" | proj -I -f %.12f $(proj_string 23031) | tr '\t' ' ' >"$work/geo"
# shellcheck disable=SC2046
cct_steps "$work/geo" "$steps" | proj -f %.4f $(proj_string 32631) | tr '\t' ' ' >"$work/expected"
sed -i '2s/$/ name/' "$work/expected"
echo "$out" >"$work/got"
numbers_agree "23031 to 32631 against proj and cct" 0.002 "$work/got" "$work/expected"

# Same datum: no transformation, no report; a projected target is the
# projection alone.
printf '15 50\n' >"$work/in"
run_ko "$work/in" transform -f 4326 -t 32633
expect_equal "same datum says nothing" "" "$err"
expect_equal "same datum equals project" "$("$ko" project 32633 <"$work/in")" "$out"
# A prime meridian and a unit: NTF (Paris), in grads, to NTF through the
# longitude rotation; cs2cs reads degrees (0.9 per grad) latitude first.
# PROJ's Paris meridian (2d20'14.025") and EPSG's (2.5969213 grads) differ
# by 3e-9 degree.
printf '0.0 54.0\n2.5 50.5\n' >"$work/in"
run_ko "$work/in" transform -p 10 -f 4807 -t 4275
expect_in "meridian change" "using EPSG:1763 " "$err"
awk '{ print $2 * 0.9, $1 * 0.9 }' "$work/in" | cs2cs -d 10 EPSG:4807 EPSG:4275 |
  awk '{ print $2, $1 }' >"$work/expected"
echo "$out" >"$work/got"
numbers_agree "NTF (Paris) to NTF against cs2cs" 1e-8 "$work/got" "$work/expected"

# Heights: a 2D system's third number goes out as it came in (it took part
# in the step); between two 3D systems the ellipsoidal height is converted.
# The expected 3D height comes from the Helmert pipeline of EPSG:1237
# without its push/pop of the height.
printf '10 50 100\n' >"$work/in"
run_ko "$work/in" transform -f 4322 -t 4326
expect_equal "2D height unchanged" "100.000" "$(echo "$out" | cut -d' ' -f3)"
run_ko "$work/in" transform -p 6 -f 4985 -t 4979
expect_in "3D uses WGS 72 to WGS 84 (1)" "EPSG:1237" "$err"
projinfo -k operation EPSG:1237 -o PROJ -q | grep -v -e 'push' -e 'pop' | tr -d '\n' >"$work/pipeline"
# shellcheck disable=SC2046
echo "50 10 100 0" | cct -d 6 $(cat "$work/pipeline") | awk '{ print $2, $1, $3 }' >"$work/expected"
echo "$out" >"$work/got"
numbers_agree "3D height against cct" 0.001 "$work/got" "$work/expected"

# A grid: with NZGD49 to NZGD2000 under KODATA the grid transformation is
# chosen; a point outside the grid is reported, the others converted.
mkdir -p "$work/data/ntv2"
ln -s /usr/share/proj/nzgd2kgrid0005.gsb "$work/data/ntv2/"
printf '174.78 -41.29 10 Wellington\n160 -30 5 sea\n172.6 -43.5\n' >"$work/in"
KODATA="$work/data" run_ko "$work/in" transform -p 10 -f 4272 -t 4167
expect_status "grid with a point outside" 1
expect_in "grid chosen" "using EPSG:1568 " "$err"
expect_in "outside the grid reported" "line 2: outside what the transformation covers" "$err"
mapfile -t lines <<<"$out"
expect_equal "outside the grid kept in place" "* * * sea" "${lines[1]}"
printf '%s\n%s\n' "$(echo "${lines[0]}" | cut -d' ' -f1-2)" "${lines[2]}" >"$work/got"
printf '174.78 -41.29\n172.6 -43.5\n' >"$work/pts"
cct_steps "$work/pts" "1568 0" >"$work/expected"
numbers_agree "NTv2 against cct" 1e-9 "$work/got" "$work/expected"
run_ko "$work/in" transform -f 4272 -t 4167
expect_not_in "without the grid another is chosen" "EPSG:1568 " "$err"

# --via: the named transformation, in the direction that joins the systems;
# chained; refused when it joins other datums.
printf '530000 180000 x\n' >"$work/in"
run_ko "$work/in" transform -p 4 -f 27700 -t 4326 --via 1314
expect_equal "--via report" "ko: using EPSG:1314 OSGB_1936_To_WGS_1984_6 (accuracy 2 m)" "$err"
# shellcheck disable=SC2046
echo "530000 180000" | proj -I -f %.12f $(proj_string 27700) | tr '\t' ' ' >"$work/geo"
cct_steps "$work/geo" "1314 0" | awk '{ printf "%.4f %.4f x\n", $1, $2 }' >"$work/expected"
echo "$out" >"$work/got"
numbers_agree "--via 1314 against cct" 1e-4 "$work/got" "$work/expected"
printf -- '-100 40\n' >"$work/in"
run_ko "$work/in" transform -p 10 -f 4267 -t 4269 --via 1173 --via 1188
expect_in "chain report" "EPSG:1173 NAD_1927_To_WGS_1984_4 (accuracy 10 m), then EPSG:1188 NAD_1983_To_WGS_1984_1 inverse" "$err"
cct_steps "$work/in" "$(used_steps)" >"$work/expected"
echo "$out" >"$work/got"
numbers_agree "chain against cct" 1e-8 "$work/got" "$work/expected"
run_ko "$work/in" transform -f 27700 -t 4326 --via 1188
expect_status "--via joining other datums" 2
expect_in "--via mismatch message" "neither has the datum of GCS_OSGB_1936" "$err"
run_ko "$work/in" transform -f 4267 -t 4269 --via 1173
expect_status "--via ending elsewhere" 2
run_ko "$work/in" transform -f 4272 -t 4167 --via 1568
expect_status "--via with a missing grid" 2
expect_in "missing grid message" "grid file" "$err"

# CSV with projected output and a height column.
printf 'id,lon,lat,h\n1,3,49.6,50\n2,3.1,49.5,\n' >"$work/in.csv"
run_ko "$work/in.csv" transform --csv -f 4230 -t 32631
expect_status "csv" 0
mapfile -t lines <<<"$out"
expect_equal "csv header" "id,lon,lat,h,x,y" "${lines[0]}"
expect_in "csv height kept" "1,3,49.6,50.000," "${lines[1]}"
expect_in "csv empty height stays empty" "2,3.1,49.5,," "${lines[2]}"

# Bad lines and bad systems.
printf '3 49.6\nnot a point\n3 91\n' >"$work/in"
run_ko "$work/in" transform -f 4230 -t 4326
expect_status "bad lines" 1
expect_in "unreadable line" "line 2:" "$err"
expect_in "latitude beyond the pole" "line 3: latitude beyond the poles" "$err"
run_ko "$work/in" transform -f 999999 -t 4326
expect_status "unknown code" 2
expect_in "unknown code message" "999999" "$err"
run_ko "$work/in" transform -f 'GEOGCS["x",PRIMEM["G",0]]' -t 4326
expect_status "bad WKT" 2
expect_in "bad WKT message" "Missing datum in WKT string" "$err"
run_ko "$work/in" transform -f 4326
expect_status "no --to" 2
printf '0 0\n' >"$work/in"
run_ko "$work/in" transform -f 4801 -t 4326
expect_status "no transformation at the point" 2
expect_in "no transformation message" "No range matches" "$err"
run_ko "$work/in" transform -f 4326 -t 1188
expect_status "a transformation as a system" 2
expect_in "wrong type message" "not a projected or geographic coordinate system" "$err"

finish
