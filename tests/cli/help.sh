#!/usr/bin/env bash
# The manual: "ko --help" and every command's --help carry the sections of
# a manual page; docs/ko.1 is the page the tool writes from the same texts;
# every option the help documents is one the command accepts.
# Usage: help.sh <path to ko>
ko=${1:?usage: help.sh <path to ko>}
source "$(dirname "$0")/support.bash"

run_ko /dev/null --help
expect_status "ko --help" 0
for section in NAME SYNOPSIS DESCRIPTION COMMANDS "EXIT STATUS" ENVIRONMENT; do
  expect_match "ko --help has $section" "(^|"$'\n'")$section"$'\n' "$out"
done
tool_help=$out
run_ko /dev/null help
expect_equal "ko help is ko --help" "$tool_help" "$out"

commands=$(echo "$tool_help" | sed -n '/^COMMANDS$/,/^$/p' | awk 'NR > 1 && /^    [a-z]/ { print $1 }')
expect_equal "commands listed" "info list project transform error version help" "$(echo $commands)"
for command in $commands; do
  run_ko /dev/null "$command" --help
  expect_status "ko $command --help" 0
  for section in NAME SYNOPSIS DESCRIPTION "EXIT STATUS"; do
    expect_match "ko $command --help has $section" "(^|"$'\n'")$section"$'\n' "$out"
  done
  expect_in "ko $command --help names itself" "ko $command - " "$out"
  help_text=$out
  run_ko /dev/null help "$command"
  expect_equal "ko help $command" "$help_text" "$out"
  # Every long option of OPTIONS is accepted: given before --help (with a
  # value when it takes one), it leaves --help to answer.
  options=$(echo "$help_text" | sed -n '/^OPTIONS$/,/^[A-Z]/p' |
    grep -oE '^    (-[A-Za-z], )?--[a-z-]+( [A-Z,]+)?$' | sed -E 's/^ *(-[A-Za-z], )?//')
  while read -r option placeholder; do
    [ -z "$option" ] && continue
    case $placeholder in
      TYPE) value=projcs ;; FORMAT) value=wkt1 ;; LON,LAT) value=1,1 ;; N) value=3 ;;
      CHAR) value=';' ;; *) value=${placeholder:+x} ;;
    esac
    # shellcheck disable=SC2086
    run_ko /dev/null "$command" "$option" ${value:+"$value"} --help
    expect_status "ko $command $option is accepted" 0
  done <<<"$options"
done
for command in info list project transform; do
  run_ko /dev/null "$command" --help
  for section in OPTIONS EXAMPLES; do
    expect_match "ko $command --help has $section" "(^|"$'\n'")$section"$'\n' "$out"
  done
done

# docs/ko.1 is what the tool writes, and groff reads it without a warning.
run_ko /dev/null help --man
check "docs/ko.1 is up to date (ko help --man > docs/ko.1)" \
  diff <(echo "$out") "$source_dir/docs/ko.1"
if command -v groff >/dev/null; then
  check "groff reads the page cleanly" bash -c "[ -z \"\$(groff -man -ww -z '$source_dir/docs/ko.1' 2>&1)\" ]"
else
  echo "SKIP: groff is not installed (Debian package groff-base); the page was not typeset"
fi
# The page carries every command's options and examples in the same words.
for command in info list project transform; do
  "$ko" "$command" --help | sed -n '/^EXAMPLES$/,/^EXIT/p' | sed -n 's/^        \$ //p' >"$work/examples"
  while read -r example; do
    expect_in "ko.1 has the example '$example'" "$(echo "$example" | sed 's/-/\\-/g')" "$out"
  done <"$work/examples"
done

# Usage errors.
run_ko /dev/null
expect_status "no command" 2
run_ko /dev/null frobnicate
expect_status "unknown command" 2
expect_in "unknown command named" "unknown command 'frobnicate'" "$err"
run_ko /dev/null help frobnicate
expect_status "help on an unknown command" 2
run_ko /dev/null version
expect_match "version" '^ko [0-9]+\.[0-9]+' "$out"

finish
