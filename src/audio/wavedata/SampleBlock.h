// Blocks of samples at once.
//
// Everything that walks a sound goes through these: width and form of the sample
// are decided once a block, and the loops inside are such that the compiler makes
// vector code of them. Each gives exactly what the same steps through
// SampleFormat give for every single sample.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "audio/wavedata/SampleFormat.h"

namespace velora {

/// Samples at equal distances: a channel, or with the stride of one container
/// the samples of all channels. Only borrows.
struct ConstSamples {
  const std::byte* data = nullptr;
  size_t stride = 0;  ///< bytes from one sample to the next
  size_t count = 0;
};
struct Samples {
  std::byte* data = nullptr;
  size_t stride = 0;
  size_t count = 0;

  operator ConstSamples() const { return {data, stride, count}; }
};

/// Values of the samples; `values` has room for all of them.
void DecodeBlock(ConstSamples source, const SampleFormat& format, int32_t* values);

/// Stores values as they are: what does not fit the resolution is cut off.
void EncodeBlock(const int32_t* values, Samples target, const SampleFormat& format);

/// Converts magnitude and sign separately, clamps and stores; both runs have the
/// same count.
void ConvertBlock(ConstSamples source, const SampleFormat& sourceFormat, Samples target,
                  const SampleFormat& targetFormat);

/// Multiplies by the gain in double precision, clamps, cuts toward zero. A
/// product that is no number becomes the smallest value.
void ScaleBlock(Samples samples, const SampleFormat& format, double gain);

/// Subtracts a value and clamps.
void OffsetBlock(Samples samples, const SampleFormat& format, int32_t offset);

/// Stores the same value everywhere, uncut as EncodeBlock.
void FillBlock(Samples samples, const SampleFormat& format, int32_t value);

/// The largest magnitude; 0 without samples.
int64_t PeakOfBlock(ConstSamples source, const SampleFormat& format);

/// The sum of all values.
int64_t SumOfBlock(ConstSamples source, const SampleFormat& format);

/// How many samples of a band count are outside it.
inline constexpr size_t kBandCount = 64;

/// For each whole group of kBandCount samples the number of values outside
/// `low` to `high`, both of which are inside. `low` must not be above `high`.
void CountOutside(ConstSamples source, const SampleFormat& format, int32_t low, int32_t high,
                  std::span<uint8_t> counts);

}  // namespace velora
