#!/usr/bin/env bash
# Sets up, builds and runs every test: the unit and corpus tests under AddressSanitizer
# and UndefinedBehaviorSanitizer, and each fuzzer for a bounded time.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
# Four fuzzers share the three minutes that three had at a minute each.
fuzz_seconds=${LUMORA_FUZZ_SECONDS:-45}
failed=()

step() { echo; echo "=== $* (at ${SECONDS}s) ==="; }

step "setup"
"$root/scripts/setup.sh" || exit 1

step "build and test under sanitizers"
# One build serves every test: the tests run once, under AddressSanitizer (leaks
# included) and UndefinedBehaviorSanitizer, which catches all a plain build's run would
# and more; two full builds of the controls and the program would not fit in CI's time.
# Line tables are enough for the reports' stack traces, and -O1 builds far faster than -O2.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$root/tests/lsan.supp}
if LUMORA_BUILD="$root/build-asan" "$root/scripts/build.sh" -DLUMORA_SANITIZE=ON \
     -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG"; then
  (cd "$root/build-asan" && ctest --output-on-failure -j"$(nproc)") || failed+=("sanitizer tests")
else
  failed+=("sanitizer build")
fi

step "fuzzers (${fuzz_seconds}s each)"
if [ -f "$root/tests/fuzz/CMakeLists.txt" ]; then
  if LUMORA_BUILD="$root/build-fuzz" "$root/scripts/build.sh" -DLUMORA_FUZZ=ON \
       -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang; then
    "$root/tests/fuzz/run.sh" "$root/build-fuzz/fuzz" "$fuzz_seconds" || failed+=("fuzzers")
  else
    failed+=("fuzz build")
  fi
fi

echo
echo "Finished in ${SECONDS}s."
if [ ${#failed[@]} -gt 0 ]; then
  echo "FAILED: ${failed[*]}"
  exit 1
fi
echo "All tests passed."
