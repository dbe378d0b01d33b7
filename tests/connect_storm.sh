#!/usr/bin/env bash
# Ten thousand clients, one after the other, each leaving in another way: no slot, descriptor or memory
# may be lost. Runs for minutes, so it is no part of ./test. IED_CONNECTS sets another number, PRESET
# another build (asan, tsan).
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
test="$root/build/${PRESET:-default}/tests/connect_disconnect_test"
if [ ! -x "$test" ]; then
    echo "connect_storm.sh: $test is not built; ./test builds it" >&2
    exit 1
fi
export IED_CONNECTS=${IED_CONNECTS:-10000}
exec "$test" "$@"
