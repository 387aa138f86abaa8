#!/usr/bin/env bash
# The main job, as README shows it: the ko tool converting coordinates with
# the compiled-in catalogue.  Usage: demo.sh [path to ko]
set -euo pipefail
ko=$(realpath "${1:-build/release/ko}")

show() {  # prints a command line, then runs it
  echo "\$ $1"
  eval "${1//ko /\"\$ko\" }"
  echo
}

dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
printf '13.4050 52.5200 Berlin\n14.4378 50.0755 Prague\n16.3738 48.2082 Vienna\n' >cities.txt

show "ko version"
show "cat cities.txt"
echo "# Three cities (longitude, latitude, WGS 84) to WGS 84 / UTM zone 33N:"
show "ko project 32633 cities.txt"
echo "# ... and back again:"
show "ko project 32633 cities.txt | ko project --inverse 32633"
echo "# A datum shift: the same cities given on ED50 to WGS 84, which"
echo "# transformation is chosen at the first point and said on standard error:"
show "ko transform --from 4230 --to 4326 cities.txt 2>&1"
echo "# ED50 / UTM zone 33N to WGS 84 / UTM zone 33N, unproject, shift, project:"
show "ko project 23033 cities.txt | ko transform --from 23033 --to 32633 2>&1"
echo "# The system used, as WKT with its area of use:"
show "ko info --compact 32633"
