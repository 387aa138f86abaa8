# Helpers of the end-to-end tests of the ko tool, sourced by each
# tests/cli/<command>.sh after it has set ko to the tool's path.  Expected
# values come from PROJ's command-line programs (proj, cct, cs2cs,
# projinfo), run inside the tests.
set -u
passed=0
failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

pass() { passed=$((passed + 1)); }
fail() {
  failed=$((failed + 1))
  echo "FAIL: $*"
}

# check <label> <command...>: the command succeeds.
check() {
  local label=$1
  shift
  if "$@"; then pass; else fail "$label"; fi
}

# run_ko <stdin file> <arguments...>: runs ko; sets out, err and status.
run_ko() {
  local input=$1
  shift
  "$ko" "$@" <"$input" >"$work/out" 2>"$work/err"
  status=$?
  out=$(cat "$work/out")
  err=$(cat "$work/err")
}

expect_status() {  # <label> <expected status>
  if [ "$status" -eq "$2" ]; then pass; else fail "$1: status $status, expected $2 ($err)"; fi
}

expect_in() {  # <label> <needle> <haystack>
  if [[ "$3" == *"$2"* ]]; then pass; else fail "$1: '$2' not in '$3'"; fi
}

expect_match() {  # <label> <extended regular expression> <text>
  if [[ "$3" =~ $2 ]]; then pass; else fail "$1: '$3' does not match '$2'"; fi
}

expect_not_in() {  # <label> <needle> <haystack>
  if [[ "$3" != *"$2"* ]]; then pass; else fail "$1: '$2' unexpectedly in '$3'"; fi
}

expect_equal() {  # <label> <expected> <actual>
  if [ "$2" == "$3" ]; then pass; else fail "$1: expected '$2', got '$3'"; fi
}

# numbers_agree <label> <tolerance> <file a> <file b>: both files have the
# same number of lines and every whitespace-separated field that is a
# number in a is within tolerance of the same field in b; other fields
# must be equal.
numbers_agree() {
  local label=$1 tolerance=$2
  local report
  report=$(awk -v tol="$tolerance" '
    function isnum(s) { return s ~ /^[-+]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][-+]?[0-9]+)?$/ }
    function abs(v) { return v < 0 ? -v : v }
    NR == FNR { a[FNR] = $0; na = FNR; next }
    {
      nb = FNR
      n = split(a[FNR], fa, /[ \t]+/); m = split($0, fb, /[ \t]+/)
      if (n != m) { print "line " FNR ": " a[FNR] " | " $0; bad++; next }
      for (i = 1; i <= n; i++) {
        if (isnum(fa[i]) && isnum(fb[i])) {
          if (abs(fa[i] - fb[i]) > tol) { print "line " FNR ": " fa[i] " vs " fb[i]; bad++ }
        } else if (fa[i] != fb[i]) { print "line " FNR ": " fa[i] " vs " fb[i]; bad++ }
      }
    }
    END { if (na != nb) print "line counts " na " and " nb; exit (bad > 0 || na != nb) }
  ' "$3" "$4")
  if [ $? -eq 0 ]; then pass; else fail "$label: $(echo "$report" | head -3)"; fi
}

# The PROJ string of a projected system without its CRS marker, for proj(1).
proj_string() { projinfo "EPSG:$1" -o PROJ -q | tail -1 | sed 's/+type=crs//'; }

# Swaps the first two fields (EPSG's latitude-first order for cct).
swap12() { awk '{ t = $1; $1 = $2; $2 = t; print }'; }

finish() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
