// The columns of a waveform display.
//
// A sound of N samples is shown in W columns, of which a run is worked out here.
// With W below N several samples share a column, with W above N several columns
// lie between two samples, and with W = N each column is a sample. Neighbouring
// columns reach towards each other, so that vertical lines from Low to High, drawn
// side by side, look like one connected curve.
//
// All functions: N is the number of samples in the pyramid and at least 1, `width`
// is W and at least 2, `first` is the number of the first column and at least 0,
// and `out` takes the columns from there on; those beyond the sound repeat its
// end. Halves of odd sums are cut toward zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "curves/WaveformPyramid.h"

namespace velora {

enum WaveformMark : uint8_t {
  kMarkNone = 0,
  kMarkSample = 1,        ///< a sample lies exactly here
  kMarkRisingSample = 2,  ///< the same, above the column before
};

#pragma pack(push, 1)
/// One column, a pixel wide.
struct WaveformColumn {
  int16_t Low;   ///< lowest value
  int16_t High;  ///< highest value
  uint8_t Mark;  ///< a WaveformMark

  bool operator==(const WaveformColumn&) const = default;
};
#pragma pack(pop)
static_assert(sizeof(WaveformColumn) == 5 && offsetof(WaveformColumn, Mark) == 4);

/// Columns of one sample or more; `width` must not be above N. A run that starts
/// inside the sound takes one sample more into its first column, and the sample
/// that is left over falls to another column than in a run over the whole sound.
/// With W = N the marks stay as they are.
void FillColumns(const WaveformPyramid& sound, int32_t width, int32_t first,
                 std::span<WaveformColumn> out);

/// The columns from `first` on that FillColumns gives for a run from column 0;
/// `width` must be below N.
void FillColumnsOfWhole(const WaveformPyramid& sound, int32_t width, int32_t first,
                        std::span<WaveformColumn> out);

/// Columns between samples; `width` must be above N. Values lie on straight lines,
/// and the first column of the run knows no neighbour. Samples are marked where
/// there are more than four columns to each.
void InterpolateColumns(const WaveformPyramid& sound, int32_t width, int32_t first,
                        std::span<WaveformColumn> out);

}  // namespace velora
