#!/usr/bin/env bash
# A hundred thousand ring entries while eight clients are subscribed, of which one never reads, one
# vanishes and resumes, and one enables and disables without pause: each entry comes once and in
# order, what overflowed lost its oldest alone and says so, and memory stays. Runs for about a quarter of an hour, so ./test has a short form only. IED_RING_ENTRIES sets
# another number, PRESET another build (asan, tsan).
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
test="$root/build/${PRESET:-default}/tests/report_soak_test"
if [ ! -x "$test" ]; then
    echo "report_soak.sh: $test is not built; ./test builds it" >&2
    exit 1
fi
export IED_RING_ENTRIES=${IED_RING_ENTRIES:-100000}
exec "$test" "$@"
