#!/usr/bin/env bash
# The main job on the example project: recorded sounds in, chip files out and back.
#   examples/run.sh VELORA [OUTDIR]
set -euo pipefail
velora=$(realpath "$1")
cd "$(dirname "$0")"
out=$(realpath -m "${2:-../out/example}")
rm -rf "$out"
mkdir -p "$out"

echo "Converting examples/sounds to the chip format MPM:"
"$velora" convert --recursive --to MPM --out-dir "$out/chip" sounds
echo
echo "Checking each file against itself, its stream decoded once more:"
(cd "$out" && "$velora" verify --figures --recursive chip)
echo
echo "Converting back to waves, as the chip plays them:"
"$velora" convert --recursive --to WAV --out-dir "$out/played" "$out/chip"
echo
for sound in "$out"/chip/*.MPM; do
  name=$(basename "$sound" .MPM)
  "$velora" plot "sounds/$name.wav" -o "$out/$name.svg"
  "$velora" plot "$sound" -o "$out/$name-chip.svg"
done
"$velora" curve curves/demo.json -o "$out/curves.svg"
echo "The plots of each sound (NAME.svg) and of what the chip plays (NAME-chip.svg), and"
echo "control curves drawn under a sound (curves.svg), are in"
echo "  $out"
