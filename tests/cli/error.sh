#!/usr/bin/env bash
# "ko error <number>" prints "<number>: <text>" with the message text of the
# error number, digits for numbers without a text, and refuses what is not a
# number.  Usage: error.sh <path to ko>
set -u
ko=${1:?usage: error.sh <path to ko>}
passed=0
failed=0

expect_output() {  # expected-output, arguments...
  local expected=$1
  shift
  local got
  got=$("$ko" "$@" 2>/dev/null)
  if [ "$got" == "$expected" ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAIL: ko $*: expected '$expected', got '$got'"
  fi
}

expect_status() {  # expected-status, arguments...
  local expected=$1
  shift
  "$ko" "$@" >/dev/null 2>&1
  local status=$?
  if [ "$status" -eq "$expected" ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAIL: ko $*: expected status $expected, got $status"
  fi
}

expect_output "0: No error" error 0
expect_output "1: No memory" error 1
expect_output "3: Free mutex in use" error 3
expect_output "107: Duplicate parameter code in objedit entry" error 107
expect_output "128: Duplicate parameter code in objedit entry" error 128
expect_output "334: Null or invalid datum object argument" error 334
expect_output "354: Name too long" error 354
expect_output "458: Expecting ',' or '[' in WKT string" error 458
expect_output "805: Null or invalid projcs string" error 805
expect_output "9999: 9999" error 9999
expect_output "316: 316" error 316
expect_output "-1: -1" error -1
expect_status 0 error 334
expect_status 2 error
expect_status 2 error abc
expect_status 2 error 12x
expect_status 2 error 99999999999999999999

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
