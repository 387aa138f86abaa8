#!/usr/bin/env bash
# The main job, as README shows it: the ko tool at work.
set -euo pipefail
ko=${1:-build/release/ko}
echo "\$ ko version"
"$ko" version
echo "\$ ko error 334"
"$ko" error 334
