#include "audio/codecs/MdpcmEncDec.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "audio/wavedata/ProgressCallbackAgent.h"

namespace velora {
namespace {

constexpr int kSampleMax = 4095;
constexpr int kSilence = 2048;
constexpr unsigned kSampleBits = 12;
constexpr size_t kSpareBytes = 102;

constexpr unsigned kFieldOfRow0 = 14;  // where a zero header is avoided
constexpr unsigned kRowWithoutField = 14;

constexpr size_t kRootRows = 16;
constexpr std::array<MdpcmStep, kRootRows> MakeRootSteps() {
  std::array<MdpcmStep, kRootRows> rows{};
  for (unsigned row = 0; row < kRootRows; ++row) {
    rows[row] = {static_cast<uint16_t>(124 * (row + 1) - 1), static_cast<uint16_t>(8 * row + 8)};
  }
  return rows;
}
constexpr std::array<MdpcmStep, kRootRows> kRootSteps = MakeRootSteps();

Status NoEndMark(size_t at) {
  return Status::Error("the coded stream ends at byte " + std::to_string(at) +
                       " without its end mark");
}

Status NoSuchRow(unsigned field, size_t at) {
  return Status::Error("the frame at byte " + std::to_string(at) + " names step row " +
                       std::to_string(field) + ", which the table lacks");
}

}  // namespace

uint16_t PadMdpcmSample(MdpcmPadding padding, uint16_t value) {
  const auto moved = [value](int by) { return static_cast<uint16_t>(value + by); };
  switch (padding) {
    case MdpcmPadding::kTowardSilence:
      if (value > 2055) return moved(-16);
      if (value < 2032) return moved(16);
      if (value > 2047) return moved(-8);
      if (value < 2040) return moved(8);
      return value;
    case MdpcmPadding::kTowardZero:
      if (value > 16) return moved(-16);
      return value < 8 ? value : moved(-8);
    case MdpcmPadding::kHold:
      break;
  }
  return value;
}

C_MDPCMEncDec::C_MDPCMEncDec(bool avoidZeroHeader, unsigned firstSampleBits)
    : C_MDPCMEncDec(Facts{kRootSteps, 15, -16}, avoidZeroHeader, firstSampleBits) {}

C_MDPCMEncDec::C_MDPCMEncDec(const Facts& facts, bool avoidZeroHeader, unsigned firstSampleBits)
    : facts_(facts), avoidZeroHeader_(avoidZeroHeader), firstSampleBits_(firstSampleBits) {}

void C_MDPCMEncDec::PlanFrames(size_t count, unsigned longLength, unsigned shortLength) {
  size_t longs = 0;
  size_t shorts = 1;
  if (count > shortLength) {
    longs = count / longLength;
    const size_t rest = count % longLength;
    shorts = (rest + shortLength - 1) / shortLength;
  }
  longFrameCount_ = static_cast<uint32_t>(longs);
  shortFrameCount_ = static_cast<uint32_t>(shorts);
  padSamples_ = static_cast<uint16_t>(longs * longLength + shorts * shortLength - count);
}

size_t C_MDPCMEncDec::GetRequiredSize(unsigned longLength, unsigned shortLength, size_t count) {
  PlanFrames(count, longLength, shortLength);
  return count + kSpareBytes +
         2 * (size_t{longFrameCount_} + size_t{shortFrameCount_} + size_t{padSamples_});
}

C_MDPCMEncDec::RowChoice C_MDPCMEncDec::ChooseRow(unsigned largestDifference) const {
  const auto found = std::ranges::find_if(
      facts_.steps, [&](const MdpcmStep& row) { return row.limit >= largestDifference; });
  unsigned row = static_cast<unsigned>(found - facts_.steps.begin());
  row = std::min<unsigned>(row, static_cast<unsigned>(facts_.steps.size()) - 1);
  if (avoidZeroHeader_ && row == kRowWithoutField) ++row;
  const unsigned field = avoidZeroHeader_ && row == 0 ? kFieldOfRow0 : row;
  return {row, field};
}

bool C_MDPCMEncDec::RowOfField(unsigned field, unsigned& row) const {
  row = avoidZeroHeader_ && field == kFieldOfRow0 ? 0 : field;
  return row < facts_.steps.size();
}

uint16_t C_MDPCMEncDec::SnapFirstSample(uint16_t value) const {
  if (firstSampleBits_ >= kSampleBits) return value;
  const unsigned shift = kSampleBits - firstSampleBits_;
  const int level = static_cast<int16_t>(value - kSilence);
  return static_cast<uint16_t>(((level >> shift) * (1 << shift)) + kSilence);
}

unsigned C_MDPCMEncDec::LargestDifference(std::span<const uint16_t> samples, size_t start,
                                          unsigned length, MdpcmPadding padding) const {
  int previous = static_cast<int>(lastSample_);
  int largest = 0;
  const size_t end = start + length;
  const size_t real = std::min(end, samples.size());
  if (start < real) {
    largest = std::abs(samples[start] - previous);
    for (size_t i = start + 1; i < real; ++i) {
      largest = std::max(largest, std::abs(samples[i] - samples[i - 1]));
    }
    previous = samples[real - 1];
  }
  for (size_t i = std::max(start, real); i < end; ++i) {
    const int next = PadMdpcmSample(padding, static_cast<uint16_t>(previous));
    largest = std::max(largest, std::abs(next - previous));
    previous = next;
  }
  return static_cast<unsigned>(largest);
}

/// Writes the code for a wanted difference and returns the sample that it gives.
unsigned C_MDPCMEncDec::EncodeSample(unsigned last, int difference, Divisor step) {
  const int magnitude =
      static_cast<int>(step.Divide(static_cast<unsigned>(std::abs(difference)) + step.value / 2));
  int code = difference < 0 ? -magnitude : magnitude;
  code = std::clamp(code, facts_.minCode, facts_.maxCode);
  const int signedStep = static_cast<int>(step.value);
  int next = static_cast<int>(last) + code * signedStep;
  for (; next > kSampleMax; next -= signedStep) --code;
  for (; next < 0; next += signedStep) ++code;
  Put(code);
  return static_cast<unsigned>(next);
}

void C_MDPCMEncDec::EncodeFrame(std::span<const uint16_t> samples, size_t start, unsigned length,
                                bool isLong, MdpcmPadding padding) {
  const RowChoice choice = ChooseRow(LargestDifference(samples, start, length, padding));
  Put(static_cast<int>(choice.field * 2 + (isLong ? 1 : 0)));

  const Divisor step(facts_.steps[choice.row].step);
  const auto wanted = [&](size_t at, unsigned last) {
    return at < samples.size() ? samples[at] : PadMdpcmSample(padding, static_cast<uint16_t>(last));
  };
  unsigned last = lastSample_;
  last = EncodeSample(last, static_cast<int16_t>(wanted(start, last) - last), step);
  last = SnapFirstSample(static_cast<uint16_t>(last));
  for (size_t at = start + 1; at < start + length; ++at) {
    last = EncodeSample(last, static_cast<int16_t>(wanted(at, last) - last), step);
  }
  lastSample_ = last;
}

size_t C_MDPCMEncDec::Encode(unsigned longLength, unsigned shortLength,
                             std::span<const uint16_t> samples, std::span<uint8_t> out,
                             MdpcmPadding padding, uint16_t firstValue,
                             I_ProgressCallback* progress) {
  if (out.size() < GetRequiredSize(longLength, shortLength, samples.size())) return 0;
  out_ = out;
  outPosition_ = 0;
  // A value off the 12-bit scale has no code that follows it.
  lastSample_ = std::min<unsigned>(firstValue, kSampleMax);

  ProgressMeter meter(progress, uint64_t{longFrameCount_} + shortFrameCount_);
  size_t at = 0;
  for (uint32_t i = 0; i < longFrameCount_; ++i, at += longLength) {
    EncodeFrame(samples, at, longLength, true, padding);
    meter.Advance();
  }
  for (uint32_t i = 0; i < shortFrameCount_; ++i, at += shortLength) {
    EncodeFrame(samples, at, shortLength, false, padding);
    meter.Advance();
  }
  Put(endMark_);
  return outPosition_;
}

Result<size_t> C_MDPCMEncDec::Decode(unsigned longLength, unsigned shortLength,
                                     std::span<const uint8_t> stream, std::span<uint16_t> out,
                                     uint16_t firstValue, I_ProgressCallback* progress) {
  ProgressMeter meter(progress, stream.size());
  int current = std::min<int>(firstValue, kSampleMax);
  size_t written = 0;
  size_t at = 0;
  while (true) {
    if (at == stream.size()) return NoEndMark(at);
    const uint8_t header = stream[at];
    if (header == endMark_) return written;
    const unsigned length = (header & 1) != 0 ? longLength : shortLength;
    unsigned row = 0;
    if (!RowOfField(header >> 1, row)) return NoSuchRow(header >> 1, at);
    if (stream.size() - at - 1 < length) return NoEndMark(stream.size());
    if (out.size() - written < length) {
      return Status::Error("the coded stream holds more samples than expected");
    }

    const int step = facts_.steps[row].step;
    const uint8_t* const codes = stream.data() + at + 1;
    uint16_t* const frame = out.data() + written;
    const auto follow = [&current, step](uint8_t code) {
      current = static_cast<int16_t>(current + static_cast<int8_t>(code) * step);
    };
    const auto hold = [&current] { current = std::clamp(current, 0, kSampleMax); };
    follow(codes[0]);
    current = static_cast<int16_t>(SnapFirstSample(static_cast<uint16_t>(current)));
    hold();
    frame[0] = static_cast<uint16_t>(current);
    for (unsigned i = 1; i < length; ++i) {
      follow(codes[i]);
      hold();
      frame[i] = static_cast<uint16_t>(current);
    }
    written += length;
    at += 1 + size_t{length};
    meter.Advance(1 + size_t{length});
  }
}

Result<size_t> C_MDPCMEncDec::CountSamples(unsigned longLength, unsigned shortLength,
                                           std::span<const uint8_t> stream) {
  size_t samples = 0;
  size_t at = 0;
  while (at < stream.size()) {
    const uint8_t header = stream[at];
    if (header == endMark_) return samples;
    const unsigned length = (header & 1) != 0 ? longLength : shortLength;
    samples += length;
    at += 1 + size_t{length};
  }
  return NoEndMark(stream.size());
}

}  // namespace velora
