#!/usr/bin/env bash
# Runs each fuzzer (the converters, the component reader and the program reader) for the given seconds on seeds
# made from the real form files and programs (../shared/corpus beside the checkout). Exits non-zero when a fuzzer
# fails.
# Usage: tests/fuzz/run.sh <folder with the fuzz binaries> <seconds>
set -uo pipefail
bin_dir=${1:?folder of the fuzz binaries}
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
corpus=${LUMORA_CORPUS:-$root/../shared/corpus}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Seeds: files up to 64 KB, so that each run gets through many inputs.
seed() {
  local target=$1; shift
  mkdir -p "$work/$target"
  if [ -d "$corpus" ]; then
    for pattern in "$@"; do
      find "$corpus" -path "$corpus/$pattern" -type f -size -64k -print0 2>/dev/null |
        xargs -0 -r cp -t "$work/$target" 2>/dev/null
    done
  fi
  if [ -z "$(ls -A "$work/$target")" ]; then
    printf 'object Form1: TForm1\r\n  Left = 8\r\nend\r\n' > "$work/$target/minimal"
  fi
}
seed binary_to_text 'bin/*' 'pairs/*.bin.dfm' 'broken/*'
seed text_to_binary 'text/*' 'pairs/*.txt.dfm'
seed reader 'bin/*' 'pairs/*.bin.dfm'
# Programs are shrunk to their headers and resources; hand-made images join them.
mkdir -p "$work/pe_image"
if [ -x "$bin_dir/make_pe_seeds" ]; then
  shopt -s nullglob
  "$bin_dir/make_pe_seeds" "$work/pe_image" "$corpus"/pe/*.exe "$corpus"/pe/*.dll "$corpus"/pe/*.bpl > /dev/null
  shopt -u nullglob
fi

status=0
for name in binary_to_text text_to_binary reader pe_image; do
  fuzzer="$bin_dir/fuzz_$name"
  if [ ! -x "$fuzzer" ]; then
    echo "fuzz: $fuzzer is missing"
    status=1
    continue
  fi
  echo "fuzz: $name for ${seconds}s on $(ls "$work/$name" | wc -l) seeds"
  mkdir -p "$work/$name.new" "$work/$name.crashes"
  dict="$here/$name.dict"
  [ -f "$dict" ] || dict="$here/form.dict"
  # A single input running past 20 s counts as a hang; memory beyond 2 GB as a failure.
  if ! "$fuzzer" "$work/$name.new" "$work/$name" \
      -dict="$dict" -max_total_time="$seconds" -max_len=65536 \
      -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
      -artifact_prefix="$work/$name.crashes/" > "$work/$name.log" 2>&1; then
    echo "fuzz: $name FAILED"
    tail -n 60 "$work/$name.log"
    for artifact in "$work/$name.crashes"/*; do
      [ -f "$artifact" ] || continue
      keep="$root/build-fuzz-artifacts"
      mkdir -p "$keep" && cp "$artifact" "$keep/" && echo "fuzz: input kept in $keep/$(basename "$artifact")"
    done
    status=1
  else
    grep -E "stat::number_of_executed_units|stat::peak_rss_mb" "$work/$name.log" | sed "s/^/fuzz: $name /"
  fi
done
exit $status
