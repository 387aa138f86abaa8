#!/usr/bin/env bash
# "ko info": the WKT and summary of catalogue objects against projinfo(1)
# and EPSG's rows in proj.db, the forms an object may be named in, the
# options, and the errors.  Usage: info.sh <path to ko>
ko=${1:?usage: info.sh <path to ko>}
source "$(dirname "$0")/support.bash"

# Numbers of every PARAMETER[...] of a WKT text, one per line.
parameter_values() { grep -o 'PARAMETER\["[^"]*", *[-0-9.eE]*' | sed 's/.*, *//'; }
# The first SPHEROID's axis and inverse flattening.
spheroid_numbers() { grep -o 'SPHEROID\["[^"]*", *[-0-9.]*, *[-0-9.]*' | head -1 | cut -d, -f2-3 | tr -d ' ' | tr ',' ' '; }

# each_among <label> <values file> <reference file>: every value of the
# first file is one of the second's, within 1e-9.
each_among() {
  local report
  report=$(awk 'NR == FNR { ref[++n] = $1; next }
    { ok = 0; for (i = 1; i <= n; i++) { d = $1 - ref[i]; if (d < 0) d = -d; if (d <= 1e-9) ok = 1 }
      if (!ok) { print $1; bad++ } }
    END { exit bad > 0 }' "$3" "$2")
  if [ $? -eq 0 ] && [ -s "$2" ]; then pass; else fail "$1: not in PROJ's: $report"; fi
}

# Projected systems of several projections: parameters, spheroid, area of
# use bounds and authority against projinfo; projection class and
# properties as map projection theory gives them.
while read -r code classes; do
  run_ko /dev/null info "$code"
  expect_status "info $code" 0
  echo "$out" | parameter_values >"$work/ours"
  projinfo "EPSG:$code" -o WKT1_GDAL -q | grep -o 'PARAMETER\["[^"]*",[-0-9.eE]*' | sed 's/.*,//' \
    >"$work/proj"
  each_among "$code parameters" "$work/ours" "$work/proj"
  echo "$out" | spheroid_numbers >"$work/ours"
  projinfo "EPSG:$code" -o WKT1_GDAL -q | grep -o 'SPHEROID\["[^"]*",[-0-9.]*,[-0-9.]*' |
    cut -d, -f2-3 | tr ',' ' ' >"$work/proj"
  numbers_agree "$code spheroid" 1e-9 "$work/ours" "$work/proj"
  # Bounds: west, south, east, north; WKT2's BBOX is south, west, north, east.
  echo "$out" | sed -n 's/^bounds: *//p' | tr -d ',a-z()' | awk '{ print $1, $2, $3, $4 }' >"$work/ours"
  projinfo "EPSG:$code" -o WKT2_2019 -q | grep -o 'BBOX\[[^]]*' | head -1 | tr -d 'BOX[' |
    awk -F, '{ print $2, $1, $4, $3 }' >"$work/proj"
  numbers_agree "$code bounds" 1e-9 "$work/ours" "$work/proj"
  expect_in "$code authority" "EPSG:$code (dataset version" "$out"
  expect_match "$code projection class" "projection: +[A-Za-z_0-9]+ \\([0-9]+\\), $classes" "$out"
  expect_in "$code status" "from the catalogue by code" "$out"
  expect_match "$code pretty WKT starts" '^PROJCS\["[^"]+",'$'\n'' GEOGCS\[' "$out"
done <<'EOF'
32633 cylindric; conformal
27700 cylindric; conformal
2154 conic; conformal
3035 azimuthal; eq-area
5070 conic; eq-area
3857 cylindric; conformal
EOF

# A geographic system: datum, spheroid and meridian in the summary.
run_ko /dev/null info 4326
expect_in "4326 spheroid" "a = 6378137.0 m, 1/f = 298.257223563" "$out"
expect_in "4326 datum" "datum:             D_WGS_1984 (EPSG:6326)" "$out"
expect_in "4326 type" "type:              geographic coordinate system" "$out"

# A transformation: systems, method and accuracy as projinfo has them.
run_ko /dev/null info 1188
expect_in "1188 is a transformation by default" "type:              geographic transformation" "$out"
expect_in "1188 from" "from:              GCS_NAD_1983 (EPSG:4269)" "$out"
accuracy=$(projinfo -k operation EPSG:1188 -o WKT2_2019 -q | sed -n 's/.*OPERATIONACCURACY\[\([0-9.]*\)\].*/\1/p')
expect_in "1188 accuracy from projinfo" "accuracy:          $accuracy m" "$out"
run_ko /dev/null info --type extent 1188
expect_in "--type picks the area of use" "type:              area of use" "$out"
expect_match "--type extent writes METADATA" '^METADATA\[' "$out"

# A replaced code builds its replacement, as EPSG's deprecation rows say.
replacement=$(python3 -c "
import sqlite3
db = sqlite3.connect('/usr/share/proj/proj.db')
query = ('select replacement_code from deprecation where table_name = \'geodetic_crs\''
         ' and deprecated_auth_name = \'EPSG\' and deprecated_code = \'4126\'')
print(db.execute(query).fetchone()[0])")
run_ko /dev/null info 4126
expect_in "replaced code" "code 4126 replaced by $replacement" "$out"
expect_in "replacement's authority" "AUTHORITY[\"EPSG\", $replacement]" "$out"

# The forms of a name: code with authority, library name, EPSG name, lower
# case; all write the same WKT.
reference=$("$ko" info -q 32633)
for name in EPSG:32633 WGS_1984_UTM_Zone_33N "WGS 84 / UTM zone 33N" "wgs_1984_utm_zone_33n"; do
  run_ko /dev/null info -q "$name"
  expect_equal "name form '$name'" "$reference" "$out"
done

# WKT read back: from a file, from standard input, from the argument.
echo "$reference" >"$work/utm.prj"
run_ko /dev/null info -q "$work/utm.prj"
expect_equal "WKT file round trip" "$reference" "$out"
run_ko "$work/utm.prj" info -q -
expect_equal "WKT from standard input" "$reference" "$out"
run_ko /dev/null info "$reference"
expect_in "WKT text is read from text" "status:            read from text" "$out"

# --compact: one line, the same text without the layout.
run_ko /dev/null info -q --compact 32633
expect_equal "compact is one line" 1 "$(echo "$out" | wc -l)"
strip_layout() { awk '{ printf "%s", $0 }' | sed -E 's/(\[|,) +/\1/g'; }
expect_equal "compact equals pretty without layout" "$(echo "$reference" | strip_layout)" \
  "$(echo "$out" | strip_layout)"

# --authority: names spelled as EPSG spells them (projinfo's name).
epsg_name=$(projinfo EPSG:32633 -o WKT1_GDAL -q | head -1 | sed 's/PROJCS\["\([^"]*\)".*/\1/')
run_ko /dev/null info -q --authority EPSG 32633
expect_match "EPSG spelling" "^PROJCS\\[\"$epsg_name\"" "$out"

# A text with a warning still gives its object; the warning is shown.
printf 'GEOGCS["y",DATUM["D",SPHEROID["s",6378137,298.257]],PRIMEM["G",0],UNIT["Degree",0.0174532925199433]' \
  >"$work/open.prj"
run_ko "$work/open.prj" info -q -
expect_status "warning" 0
expect_in "warning shown" "ko: warning 464: Missing closing ] character(s) in WKT string" "$err"
expect_match "warning object written" '^GEOGCS\["y",' "$out"

# Errors: status 2 and the library's own message.
while IFS='|' read -r label expected args; do
  # shellcheck disable=SC2086
  eval "run_ko /dev/null info $args"
  expect_status "$label" 2
  expect_in "$label message" "$expected" "$err"
done <<'EOF'
unknown code|Invalid projected CS factory code: 999999|999999
unknown name|Name not found: No such system|"No such system"
bad WKT|Missing datum in WKT string|'GEOGCS["y"]'
unreadable text|Invalid syntax|'+proj=utm +zone=33'
code of another type|is a geographic coordinate system (GCS_WGS_1984), not a projected coordinate system|--type projcs 4326
unknown type|unknown type 'nonsense'|--type nonsense 4326
wkt2 not written|cannot write a geographic coordinate system as wkt2 text yet|--format wkt2 4326
proj4 not written|cannot write a geographic coordinate system as proj4 text yet|--format proj4 4326
unknown format|unknown format 'xml'|--format xml 4326
no object|expects one object|
two objects|expects one object|4326 4267
EOF

finish
