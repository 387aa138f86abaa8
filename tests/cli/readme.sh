#!/usr/bin/env bash
# README.md shows what the tool really does: every console example is run
# again and must print what README shows; the C example is
# tests/c/readme_example.c, and its output, as README shows it, agrees
# with proj(1) and cct(1).  Usage: readme.sh <path to ko>
ko=${1:?usage: readme.sh <path to ko>}
source "$(dirname "$0")/support.bash"
readme="$source_dir/README.md"

# Console blocks: "$ command" then its output up to the closing fence.
awk -v dir="$work" '
  /^```console$/ { inside = 1; n++; next }
  /^```$/ && inside { inside = 0; next }
  inside && /^\$ / { sub(/^\$ /, ""); print > (dir "/cmd" n); next }
  inside { print > (dir "/out" n) }
' "$readme"

ko() { "$ko" "$@"; }
blocks=0
for cmd_file in "$work"/cmd*; do
  n=${cmd_file##*/cmd}
  command=$(cat "$cmd_file")
  blocks=$((blocks + 1))
  if [[ "$command" == cc* ]]; then
    c_output=$work/out$n
    continue
  fi
  got=$(eval "$command" 2>&1)
  expect_equal "README: $command" "$(cat "$work/out$n")" "$got"
done
check "README has its tool examples" [ "$blocks" -ge 5 ]

# The C example in README is the compiled one, word for word.
awk '/^```c$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "$readme" >"$work/example.c"
check "README's C example is tests/c/readme_example.c" \
  diff "$work/example.c" "$source_dir/tests/c/readme_example.c"

# Its output as README shows it: the compiled example prints it, and the
# numbers agree with proj(1) (UTM) and cct(1) (the transformation the tool
# reports for that point).
example=$(dirname "$ko")/tests/c_readme_example
check "the C example is built" [ -x "$example" ]
expect_equal "C example output" "$(cat "$c_output")" "$("$example")"
sed -n 's/^Berlin, UTM zone 33N: //p' "$c_output" >"$work/got"
echo "13.4 52.52" | proj -f %.3f $(proj_string 32633) | tr '\t' ' ' >"$work/expected"
numbers_agree "C example UTM against proj" 0.001 "$work/got" "$work/expected"
code=$(echo "2.35 48.85" | "$ko" transform -f 4230 -t 4326 2>&1 >/dev/null |
  sed -nE 's/^ko: using EPSG:([0-9]+) [^,]*$/\1/p')
check "one transformation for Paris" [ -n "$code" ]
sed -n 's/^Paris, ED50 to WGS 84: //p' "$c_output" >"$work/got"
echo "48.85 2.35 0 0" | cct -d 9 "EPSG:$code" | awk '{ print $2, $1 }' >"$work/expected"
numbers_agree "C example datum shift against cct" 1e-8 "$work/got" "$work/expected"

finish
