#include "audio/wavedata/SampleBlock.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

namespace velora {
namespace {

// Values on their way from one form to another stand in a block of this size,
// which stays in the fastest cache.
constexpr size_t kScratchCount = 1024;

// The ways in which a sample can be stored, one type each: Load gives the value of
// the container at an address, Store puts a value there. Kernels are templates
// over them, so that each loop knows its width and form.

/// Offset binary (kSigned false) or two's complement of any resolution.
template <typename Raw, bool kSigned>
struct Plain {
  static constexpr size_t kBytes = sizeof(Raw);

  static int32_t Load(const std::byte* p, const SampleFormat& format) {
    Raw raw;
    std::memcpy(&raw, p, sizeof raw);
    const auto bits = static_cast<uint32_t>(raw);
    if constexpr (kSigned) {
      return static_cast<int32_t>(bits | (0u - (bits & format.signBit)));
    } else {
      return static_cast<int32_t>(bits - format.signBit);
    }
  }

  static void Store(std::byte* p, int32_t value, const SampleFormat& format) {
    auto bits = static_cast<uint32_t>(value);
    bits = kSigned ? bits & format.valueMask : bits + format.signBit;
    const auto raw = static_cast<Raw>(bits);
    std::memcpy(p, &raw, sizeof raw);
  }
};

/// Two's complement that fills its container: the machine's own integers.
template <typename Integer>
struct Native {
  static constexpr size_t kBytes = sizeof(Integer);

  static int32_t Load(const std::byte* p, const SampleFormat&) {
    Integer value;
    std::memcpy(&value, p, sizeof value);
    return value;
  }

  static void Store(std::byte* p, int32_t value, const SampleFormat&) {
    const auto stored = static_cast<Integer>(value);
    std::memcpy(p, &stored, sizeof stored);
  }
};

/// Containers of three bytes, too rare for a loop of their own.
struct ByteWise {
  static constexpr size_t kBytes = 3;

  static int32_t Load(const std::byte* p, const SampleFormat& format) {
    return format.Decode(format.Load(p));
  }
  static void Store(std::byte* p, int32_t value, const SampleFormat& format) {
    format.Store(p, format.Encode(value));
  }
};

template <size_t kBytes>
using RawOf =
    std::conditional_t<kBytes == 1, uint8_t, std::conditional_t<kBytes == 2, uint16_t, uint32_t>>;

template <size_t kBytes, typename Visit>
void WithFormOf(const SampleFormat& format, Visit visit) {
  using Raw = RawOf<kBytes>;
  if (!format.isSigned) {
    visit(Plain<Raw, false>());
  } else if (format.resolution == 8 * kBytes) {
    visit(Native<std::make_signed_t<Raw>>());
  } else {
    visit(Plain<Raw, true>());
  }
}

/// Calls `visit` with the type that stores this format; not at all for a format
/// without a container.
template <typename Visit>
void WithForm(const SampleFormat& format, Visit visit) {
  switch (format.bytes) {
    case 1:
      return WithFormOf<1>(format, visit);
    case 2:
      return WithFormOf<2>(format, visit);
    case 3:
      return visit(ByteWise());
    case 4:
      return WithFormOf<4>(format, visit);
    default:
      return;
  }
}

/// Calls `visit` with the form and with a distance between samples that is a
/// constant where the samples lie side by side.
template <typename Visit>
void WithLayout(const SampleFormat& format, size_t stride, Visit visit) {
  WithForm(format, [&](auto form) {
    constexpr size_t kBytes = decltype(form)::kBytes;
    if (stride == kBytes) {
      visit(form, std::integral_constant<size_t, kBytes>());
    } else {
      visit(form, stride);
    }
  });
}

bool IsNative16(const SampleFormat& format, size_t stride) {
  return format.bytes == 2 && stride == 2 && format.isSigned && format.resolution == 16;
}

/// The block of `samples` that starts at index `from` and is at most as long as
/// the scratch block.
template <typename Run>
Run ScratchPiece(const Run& samples, size_t from) {
  return {samples.data + from * samples.stride, samples.stride,
          std::min(kScratchCount, samples.count - from)};
}

/// |value| shifted, the sign restored: what a change of resolution does.
struct MagnitudeShift {
  unsigned up = 0;
  unsigned down = 0;

  MagnitudeShift(const SampleFormat& source, const SampleFormat& target) {
    if (target.resolution < source.resolution) down = source.resolution - target.resolution;
    if (target.resolution > source.resolution) up = target.resolution - source.resolution;
  }

  /// In 64 bits, for magnitudes that do not stay below 2^31.
  int64_t Wide(int32_t value) const {
    const int64_t magnitude = value < 0 ? -int64_t{value} : int64_t{value};
    const int64_t shifted = (magnitude >> down) << up;
    return value < 0 ? -shifted : shifted;
  }

  int32_t Narrow(int32_t value) const {
    const int32_t sign = value >> 31;
    const int32_t magnitude = (value ^ sign) - sign;
    const int32_t shifted = (magnitude >> down) << up;
    return (shifted ^ sign) - sign;
  }
};

void ShiftMagnitudes(std::span<int32_t> values, const MagnitudeShift& shift, bool narrow,
                     const SampleFormat& target) {
  const int32_t low = target.minValue;
  const int32_t high = target.maxValue;
  const MagnitudeShift by = shift;
  if (narrow) {
    for (int32_t& value : values) {
      const int32_t shifted = by.Narrow(value);
      const int32_t above = shifted < low ? low : shifted;
      value = above > high ? high : above;
    }
  } else {
    for (int32_t& value : values) {
      value = static_cast<int32_t>(std::clamp<int64_t>(by.Wide(value), low, high));
    }
  }
}

/// 16-bit two's complement to a smaller resolution, in 16-bit arithmetic: twice the
/// samples in a vector. A magnitude of 2^15 needs the unsigned type, and shifted
/// down by at least one it cannot pass the target's range on the negative side; on
/// the positive side it is below 2^15, so that nothing is left to clamp.
template <typename Raw, bool kSigned>
void ReduceNative16(const std::byte* source, std::byte* target, size_t count,
                    const SampleFormat& targetFormat) {
  const int down = 16 - targetFormat.resolution;
  const auto add = static_cast<uint16_t>(kSigned ? 0 : targetFormat.signBit);
  const auto mask = static_cast<uint16_t>(kSigned ? targetFormat.valueMask : 0xFFFFu);
  for (size_t i = 0; i < count; ++i) {
    int16_t value;
    std::memcpy(&value, source + 2 * i, sizeof value);
    const auto sign = static_cast<uint16_t>(value >> 15);
    const auto magnitude = static_cast<uint16_t>((static_cast<uint16_t>(value) ^ sign) - sign);
    const auto shifted = static_cast<uint16_t>(magnitude >> down);
    const auto restored = static_cast<uint16_t>((shifted ^ sign) - sign);
    const auto raw = static_cast<Raw>(static_cast<uint16_t>(restored + add) & mask);
    std::memcpy(target + sizeof(Raw) * i, &raw, sizeof raw);
  }
}

/// True when the conversion was one of the common ways down from 16 bits.
bool ReduceFast(ConstSamples source, const SampleFormat& sourceFormat, Samples target,
                const SampleFormat& targetFormat) {
  if (!IsNative16(sourceFormat, source.stride) || target.stride != targetFormat.bytes ||
      targetFormat.resolution >= 16) {
    return false;
  }
  const bool isSigned = targetFormat.isSigned;
  if (targetFormat.bytes == 1) {
    const auto reduce = isSigned ? ReduceNative16<uint8_t, true> : ReduceNative16<uint8_t, false>;
    reduce(source.data, target.data, source.count, targetFormat);
    return true;
  }
  if (targetFormat.bytes == 2) {
    const auto reduce = isSigned ? ReduceNative16<uint16_t, true> : ReduceNative16<uint16_t, false>;
    reduce(source.data, target.data, source.count, targetFormat);
    return true;
  }
  return false;
}

/// The largest and the smallest value, starting from 0.
struct Extremes {
  int32_t low = 0;
  int32_t high = 0;

  int64_t Peak() const { return std::max(int64_t{high}, -int64_t{low}); }
};

Extremes ExtremesNative16(const std::byte* source, size_t count) {
  int16_t low = 0;
  int16_t high = 0;
  for (size_t i = 0; i < count; ++i) {
    int16_t value;
    std::memcpy(&value, source + 2 * i, sizeof value);
    low = std::min(low, value);
    high = std::max(high, value);
  }
  return {low, high};
}

/// The sum, with blocks of samples summed up in the type `Partial`.
template <typename Partial, typename Form, typename Stride>
int64_t SumInBlocks(ConstSamples source, const SampleFormat& format, Form form, Stride stride) {
  const SampleFormat f = format;
  int64_t sum = 0;
  for (size_t from = 0; from < source.count; from += kScratchCount) {
    const ConstSamples piece = ScratchPiece(source, from);
    Partial partial = 0;
    for (size_t i = 0; i < piece.count; ++i) partial += form.Load(piece.data + i * stride, f);
    sum += partial;
  }
  return sum;
}

uint8_t CountOutsideNative16(const std::byte* source, int16_t low, int16_t high) {
  int16_t count = 0;
  for (size_t i = 0; i < kBandCount; ++i) {
    int16_t value;
    std::memcpy(&value, source + 2 * i, sizeof value);
    count = static_cast<int16_t>(count + ((value < low) | (value > high)));
  }
  return static_cast<uint8_t>(count);
}

}  // namespace

void DecodeBlock(ConstSamples source, const SampleFormat& format, int32_t* values) {
  WithLayout(format, source.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;  // a local, that no store can change
    const std::byte* const p = source.data;
    for (size_t i = 0; i < source.count; ++i) values[i] = form.Load(p + i * stride, f);
  });
}

void EncodeBlock(const int32_t* values, Samples target, const SampleFormat& format) {
  WithLayout(format, target.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    std::byte* const p = target.data;
    for (size_t i = 0; i < target.count; ++i) form.Store(p + i * stride, values[i], f);
  });
}

void ConvertBlock(ConstSamples source, const SampleFormat& sourceFormat, Samples target,
                  const SampleFormat& targetFormat) {
  if (ReduceFast(source, sourceFormat, target, targetFormat)) return;
  const MagnitudeShift shift(sourceFormat, targetFormat);
  // Magnitudes from one or two bytes stay below 2^16, stray bits included.
  const bool narrow = sourceFormat.bytes <= 2 && sourceFormat.resolution <= 16 && shift.up <= 14;
  std::array<int32_t, kScratchCount> values;
  for (size_t i = 0; i < source.count; i += kScratchCount) {
    const ConstSamples piece = ScratchPiece(source, i);
    DecodeBlock(piece, sourceFormat, values.data());
    ShiftMagnitudes({values.data(), piece.count}, shift, narrow, targetFormat);
    EncodeBlock(values.data(), ScratchPiece(target, i), targetFormat);
  }
}

void ScaleBlock(Samples samples, const SampleFormat& format, double gain) {
  WithLayout(format, samples.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    std::byte* const p = samples.data;
    const double low = f.minValue;
    const double high = f.maxValue;
    for (size_t i = 0; i < samples.count; ++i) {
      const double product = form.Load(p + i * stride, f) * gain;
      const double above = product > low ? product : low;  // also for no number
      const double held = above < high ? above : high;
      form.Store(p + i * stride, static_cast<int32_t>(held), f);
    }
  });
}

void OffsetBlock(Samples samples, const SampleFormat& format, int32_t offset) {
  WithLayout(format, samples.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    std::byte* const p = samples.data;
    for (size_t i = 0; i < samples.count; ++i) {
      const int64_t moved = int64_t{form.Load(p + i * stride, f)} - offset;
      const int64_t held = std::clamp<int64_t>(moved, f.minValue, f.maxValue);
      form.Store(p + i * stride, static_cast<int32_t>(held), f);
    }
  });
}

void FillBlock(Samples samples, const SampleFormat& format, int32_t value) {
  WithLayout(format, samples.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    std::byte* const p = samples.data;
    for (size_t i = 0; i < samples.count; ++i) form.Store(p + i * stride, value, f);
  });
}

int64_t PeakOfBlock(ConstSamples source, const SampleFormat& format) {
  if (IsNative16(format, source.stride)) return ExtremesNative16(source.data, source.count).Peak();
  Extremes extremes;
  WithLayout(format, source.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    const std::byte* const p = source.data;
    int32_t low = 0;
    int32_t high = 0;
    for (size_t i = 0; i < source.count; ++i) {
      const int32_t value = form.Load(p + i * stride, f);
      low = value < low ? value : low;
      high = value > high ? value : high;
    }
    extremes = {low, high};
  });
  return extremes.Peak();
}

int64_t SumOfBlock(ConstSamples source, const SampleFormat& format) {
  int64_t sum = 0;
  WithLayout(format, source.stride, [&](auto form, auto stride) {
    // 32 bits hold the sum of a scratch block of values that stay below 2^17.
    const bool narrow = form.kBytes <= 2 && format.resolution <= 16;
    sum = narrow ? SumInBlocks<int32_t>(source, format, form, stride)
                 : SumInBlocks<int64_t>(source, format, form, stride);
  });
  return sum;
}

void CountOutside(ConstSamples source, const SampleFormat& format, int32_t low, int32_t high,
                  std::span<uint8_t> counts) {
  if (IsNative16(format, source.stride) && low >= INT16_MIN && high <= INT16_MAX) {
    for (size_t group = 0; group < counts.size(); ++group) {
      counts[group] = CountOutsideNative16(source.data + group * kBandCount * source.stride,
                                           static_cast<int16_t>(low), static_cast<int16_t>(high));
    }
    return;
  }
  WithLayout(format, source.stride, [&](auto form, auto stride) {
    const SampleFormat f = format;
    for (size_t group = 0; group < counts.size(); ++group) {
      const std::byte* const p = source.data + group * kBandCount * stride;
      int32_t count = 0;
      for (size_t i = 0; i < kBandCount; ++i) {
        const int32_t value = form.Load(p + i * stride, f);
        count += (value < low) | (value > high);
      }
      counts[group] = static_cast<uint8_t>(count);
    }
  });
}

}  // namespace velora
