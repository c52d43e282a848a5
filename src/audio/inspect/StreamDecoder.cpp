#include "audio/inspect/StreamDecoder.h"

#include <algorithm>

namespace velora {

namespace {

/// Groups of 8 sign bits and 8 magnitudes of 4 bits.
void UnpackSignsAndNibbles(std::span<const std::byte> body, std::span<int8_t> codes) {
  constexpr size_t kCodes = 8;
  constexpr size_t kBytes = 5;
  for (size_t group = 0; (group + 1) * kCodes <= codes.size(); ++group) {
    const std::span<const std::byte> bytes = body.subspan(group * kBytes, kBytes);
    const auto signs = std::to_integer<unsigned>(bytes[0]);
    for (size_t i = 0; i < kCodes; ++i) {
      const auto pair = std::to_integer<int>(bytes[1 + i / 2]);
      const int magnitude = i % 2 == 0 ? pair & 0x0F : pair >> 4;
      const bool negative = (signs >> i & 1) != 0;
      const int code = !negative ? magnitude : magnitude == 0 ? -16 : -magnitude;
      codes[group * kCodes + i] = static_cast<int8_t>(code);
    }
  }
}

constexpr int32_t kMiddle = 2048;
constexpr int kSampleBits = 12;

/// The grid of a frame's first sample: rounds toward minus infinity.
int32_t ToGrid(int32_t value, uint8_t bits) {
  if (bits >= kSampleBits) return value;
  const int shift = kSampleBits - bits;
  return ((value - kMiddle) >> shift) * (1 << shift) + kMiddle;
}

}  // namespace

StreamDecoder::StreamDecoder(const InputFile& file, const StreamGrammar& grammar)
    : grammar_(&grammar), window_(file), value_(grammar.firstValue) {}

void StreamDecoder::Begin(const StreamCommand& command) {
  command_ = command;
  done_ = 0;
  heldCodes_ = 0;
  movingCodes_ = 0;
  if (command.kind == CommandKind::kShortFrame || command.kind == CommandKind::kLongFrame) {
    LoadCodes();
  }
}

void StreamDecoder::LoadCodes() {
  command_.length = std::min<uint32_t>(command_.length, kMaxFrame);
  const std::span<int8_t> codes = std::span(codes_).first(command_.length);
  const uint32_t size = grammar_->FrameBodySize(command_.length);
  const std::span<const std::byte> body = window_.Get(command_.bodyOffset, size);
  std::fill(codes.begin(), codes.end(), int8_t{0});
  if (body.size() < size) return;
  switch (grammar_->packing) {
    case CodePacking::kSignsAndNibbles:
      UnpackSignsAndNibbles(body, codes);
      break;
  }
}

size_t StreamDecoder::Read(std::span<uint16_t> out) {
  out = out.first(std::min<size_t>(out.size(), command_.length - done_));
  size_t count = out.size();
  switch (command_.kind) {
    case CommandKind::kEnd:
      return 0;
    case CommandKind::kSilence:
      std::fill(out.begin(), out.end(), Value());
      break;
    case CommandKind::kRaw:
      count = ReadRaw(out);
      break;
    case CommandKind::kShortFrame:
    case CommandKind::kLongFrame:
      ReadFrame(out);
      break;
  }
  done_ += static_cast<uint32_t>(count);
  return count;
}

void StreamDecoder::ReadFrame(std::span<uint16_t> out) {
  const int32_t step = grammar_->steps[command_.row];
  const int32_t top = grammar_->maxValue;
  for (size_t i = 0; i < out.size(); ++i) {
    const int32_t code = codes_[done_ + i];
    int32_t next = value_ + code * step;
    if (done_ + i == 0) next = ToGrid(next, grammar_->firstSampleBits);
    value_ = std::clamp(next, 0, top);
    heldCodes_ += next != value_;
    movingCodes_ += code != 0;
    out[i] = Value();
  }
}

size_t StreamDecoder::ReadRaw(std::span<uint16_t> out) {
  size_t count = 0;
  if (done_ == 0 && !out.empty()) out[count++] = command_.startHigh;
  while (count < out.size()) {
    // The body holds the samples behind the first one.
    const uint64_t at = command_.bodyOffset + done_ + count - 1;
    const std::span<const std::byte> bytes = window_.Get(at, out.size() - count);
    if (bytes.empty()) break;
    for (const std::byte byte : bytes) out[count++] = std::to_integer<uint16_t>(byte);
  }
  for (uint16_t& sample : out.first(count)) {
    sample = static_cast<uint16_t>(sample << grammar_->rawShift);
  }
  if (count > 0) value_ = out[count - 1];
  return count;
}

}  // namespace velora
