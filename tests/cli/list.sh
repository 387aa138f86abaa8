#!/usr/bin/env bash
# "ko list": listings against EPSG's rows in PROJ's proj.db (names, areas
# of use, deprecation), pattern rules, and errors.
# Usage: list.sh <path to ko>
ko=${1:?usage: list.sh <path to ko>}
source "$(dirname "$0")/support.bash"

# sql <query>: EPSG rows of proj.db, one per line, fields separated by '|'.
sql() {
  python3 - "$1" <<'EOF'
import sqlite3, sys
db = sqlite3.connect('/usr/share/proj/proj.db')
for row in db.execute(sys.argv[1]):
    print('|'.join(str(v) for v in row))
EOF
}

codes_of() { awk '{ sub(/^EPSG:/, "", $1); print $1 }' | sort; }

# Every UTM zone north of WGS 84, as EPSG names them.
run_ko /dev/null list projcs "WGS_1984_UTM_Zone_*N"
expect_status "UTM list" 0
sql "select code from projected_crs where auth_name = 'EPSG' and deprecated = 0
     and name like 'WGS 84 / UTM zone %N'" | sort >"$work/expected"
echo "$out" | codes_of >"$work/got"
check "UTM zones north match EPSG's" diff "$work/expected" "$work/got"
expect_equal "sixty zones" 60 "$(wc -l <"$work/got")"
expect_match "line layout" '^EPSG:32601 +WGS_1984_UTM_Zone_1N$' "$(echo "$out" | head -1)"

# --area: every system listed has an area of use (in proj.db) whose box
# holds the point; systems known to cover it are there, one beside not.
check_area() {  # <type> <proj.db tables> <lon> <lat> <must be listed> <must not be listed>
  run_ko /dev/null list --area "$3,$4" "$1"
  expect_status "--area $1" 0
  echo "$out" | codes_of >"$work/got"
  sql "select u.object_code from usage u join extent e
       on u.extent_auth_name = e.auth_name and u.extent_code = e.code
       where u.object_table_name in ($2) and u.object_auth_name = 'EPSG'
       and e.south_lat <= $4 and e.north_lat >= $4
       and ((e.west_lon <= e.east_lon and e.west_lon <= $3 and e.east_lon >= $3)
         or (e.west_lon > e.east_lon and (e.west_lon <= $3 or e.east_lon >= $3)))" |
    sort -u >"$work/holding"
  check "--area $1: each listed area holds the point" \
    bash -c "[ -z \"\$(comm -23 '$work/got' '$work/holding')\" ]"
  check "--area $1 lists $5" grep -qx "$5" "$work/got"
  check "--area $1 leaves out $6" bash -c "! grep -qx '$6' '$work/got'"
}
check_area projcs "'projected_crs'" 13.4 52.5 32633 32632
check_area geogtran "'helmert_transformation', 'grid_transformation', 'other_transformation'" \
  2.35 48.85 1193 1188
check_area geogcs "'geodetic_crs'" -100 40 4267 4230

# Patterns: wildcards, spaces for underscores, no wildcard means anywhere,
# case ignored, codes matched too.
run_ko /dev/null list projcs "3263?"
expect_equal "code pattern" "$(seq 32630 32639)" "$(echo "$out" | codes_of)"
run_ko /dev/null list projcs "wgs 1984 utm zone 33n"
expect_in "spaces and case" "EPSG:32633   WGS_1984_UTM_Zone_33N" "$out"
run_ko /dev/null list geogcs "*NAD_1927"
expect_in "anchored pattern" "GCS_North_American_1927" "$(echo "$out" | head -1)GCS_North_American_1927"
expect_not_in "anchored pattern ends" "NAD_1927_" "$out"
run_ko /dev/null list spheroid clarke
all=$(echo "$out" | wc -l)
expect_equal "no wildcard matches anywhere" "$all" "$(echo "$out" | grep -ci clarke)"
check "several Clarke spheroids" [ "$all" -gt 3 ]

# Deprecated objects: left out unless asked for, and then marked; the
# marks agree with EPSG's deprecated flags.
run_ko /dev/null list --deprecated projcs
echo "$out" | grep '(deprecated)$' | codes_of >"$work/marked"
check "some deprecated systems" [ -s "$work/marked" ]
sql "select code from projected_crs where auth_name = 'EPSG' and deprecated = 1" | sort \
  >"$work/deprecated"
check "each mark is EPSG's" bash -c "[ -z \"\$(comm -23 '$work/marked' '$work/deprecated')\" ]"
run_ko /dev/null list projcs
echo "$out" | codes_of >"$work/current"
check "none listed by default" bash -c "[ -z \"\$(comm -12 '$work/marked' '$work/current')\" ]"

# Nothing matching is no error, but it is said.
run_ko /dev/null list projcs "no such system at all"
expect_status "no match" 0
expect_equal "no match output" "" "$out"
expect_in "no match said" "no projected coordinate system matches" "$err"

# Errors.
while IFS='|' read -r label expected args; do
  # shellcheck disable=SC2086
  eval "run_ko /dev/null list $args"
  expect_status "$label" 2
  expect_in "$label message" "$expected" "$err"
done <<'EOF'
unknown type|unknown type 'nonsense'|nonsense
no type|expects a type|
too many operands|expects a type|projcs a b
bad point|--area takes LON,LAT|--area 13.4 projcs
latitude beyond the pole|--area takes LON,LAT|--area 13,91 projcs
EOF

finish
