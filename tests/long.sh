#!/usr/bin/env bash
# The tests that run for minutes; ./test has short forms of them.
#   long.sh connect  ten thousand clients, one after the other, each leaving in another way: no slot,
#                    descriptor or memory may be lost (IED_CONNECTS: another number)
#   long.sh reports  a hundred thousand ring entries while eight clients are subscribed, of which one
#                    never reads, one vanishes and resumes, and one enables and disables without pause:
#                    each entry comes once and in order, what overflowed lost its oldest alone and says
#                    so, and memory stays (IED_RING_ENTRIES: another number)
# PRESET names another build (asan, tsan); further arguments go to the test.
set -euo pipefail

case "${1:-}" in
connect) name=connect_disconnect_test ;;
reports) name=report_soak_test ;;
*)
    echo "usage: long.sh connect|reports [argument ...]" >&2
    exit 2
    ;;
esac
shift
test="$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../build/${PRESET:-default}/tests/$name"
if [ ! -x "$test" ]; then
    echo "long.sh: $test is not built; ./test builds it" >&2
    exit 1
fi
export IED_CONNECTS=${IED_CONNECTS:-10000} IED_RING_ENTRIES=${IED_RING_ENTRIES:-100000}
exec "$test" "$@"
