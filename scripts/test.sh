#!/usr/bin/env bash
# Sets up, builds and runs every test: the unit and corpus tests, the same tests
# under AddressSanitizer and UndefinedBehaviorSanitizer, and each fuzzer for a bounded time.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
# Four fuzzers share the three minutes that three had at a minute each.
fuzz_seconds=${LUMORA_FUZZ_SECONDS:-45}
failed=()

step() { echo; echo "=== $* (at ${SECONDS}s) ==="; }

step "setup"
"$root/scripts/setup.sh" || exit 1

step "build and test"
# Line tables are enough for the test runs' stack traces, and build far faster than
# full debug information; under the sanitizers -O1 halves the build again.
if LUMORA_BUILD="$root/build" "$root/scripts/build.sh" -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -g1 -DNDEBUG"; then
  (cd "$root/build" && ctest --output-on-failure -j"$(nproc)") || failed+=("tests")
else
  failed+=("build")
fi

step "build and test under sanitizers"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$root/tests/lsan.supp}
if LUMORA_BUILD="$root/build-asan" "$root/scripts/build.sh" -DLUMORA_SANITIZE=ON -DLUMORA_BENCH=OFF \
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
