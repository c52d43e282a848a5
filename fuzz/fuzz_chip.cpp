// Any bytes as a chip or source file: whatever opens is written again as a chip file,
// and that file must stand the inspector's checks and keep the source samples.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "audio/WaveFileUtil/MpmFile.h"
#include "audio/WaveFileUtil/WavFileFormat.h"
#include "audio/inspect/Verify.h"
#include "fuzz_file.h"

namespace {

using namespace velora;

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckSavedAgain(C_WavFile& loaded, const fuzz::FuzzDirectory& directory) {
  const Path target = directory.At("out.MPM");
  C_MpmFile file;
  file.AttachWavData(loaded.Sound());
  const bool saved = file.SaveFile(target).Ok();
  file.DetachWavData();
  if (!saved) return;

  const Result<VerifyReport> report = VerifyFile(target);
  Require(report.Ok() && report->Good());
  const auto again = OpenSound(target, {LoadScope::kAll, SampleView::kSource});
  Require(again.Ok());
  const auto words = again.Value()->Sound()->Words();
  Require(std::ranges::all_of(words, [](uint16_t word) { return word <= 4095; }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fuzz::FuzzDirectory directory;
  const Path path = directory.Write("in.bin", data, size);
  for (const SampleView view : {SampleView::kDecoded, SampleView::kSource}) {
    const auto file = OpenSound(path, {LoadScope::kAll, view});
    if (file && file.Value()->Sound()) CheckSavedAgain(*file.Value(), directory);
  }
  return 0;
}
