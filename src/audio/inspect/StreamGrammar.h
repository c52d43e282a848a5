// How the command stream of a chip family is laid in bytes, as data.
//
// All streams of the byte-wise families say the same nine things; a row of this
// table says how. A family joins by its row (and, when it packs its codes in a
// new way, by one entry of CodePacking and its reader in StreamDecoder.cpp).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace velora {

/// What a command does with the sound.
enum class CommandKind : uint8_t {
  kEnd,         ///< closes the stream
  kSilence,     ///< repeats the last value
  kRaw,         ///< samples one by one, high bits only
  kShortFrame,  ///< a frame of delta codes
  kLongFrame,
};

/// A bit field of a command's head: `width` bits of byte `byte`, from `shift` up.
struct HeadField {
  uint8_t byte = 0;
  uint8_t shift = 0;
  uint8_t width = 0;
};

/// Where the event stands in a command that carries one.
enum class EventPlace : uint8_t {
  kAtEnd,       ///< behind the last byte of the command
  kBehindHead,  ///< between head and body (the count of a raw command is body)
};

/// How the codes of a frame are packed into groups.
enum class CodePacking : uint8_t {
  /// 8 codes in 5 bytes: the 8 signs (bit i for code i), then 4 bytes of two
  /// magnitudes each, the earlier in the low nibble. Sign 1 with magnitude 0
  /// is -16.
  kSignsAndNibbles,
};

struct StreamGrammar {
  std::string_view name;  ///< of the format

  /// Byte values of end, silence, silence with event, raw, raw with event, short
  /// frame, the same with event, long frame, the same with event.
  std::array<uint8_t, 9> commands{};
  uint8_t commandMask = 0;  ///< bits of the first byte that hold the command
  uint8_t endSize = 1;      ///< bytes of the end mark; all its bits count

  HeadField row;              ///< of a frame's head
  HeadField startHigh;        ///< high bits of the value before the frame
  uint8_t frameHeadSize = 0;  ///< bytes of a frame before event and codes
  uint8_t rawCountSize = 0;   ///< bytes of a raw command's count, which holds count - 1
  EventPlace eventPlace = EventPlace::kAtEnd;

  uint16_t shortFrame = 0;  ///< samples
  uint16_t longFrame = 0;
  CodePacking packing = CodePacking::kSignsAndNibbles;
  uint8_t groupCodes = 0;  ///< codes of a group
  uint8_t groupSize = 0;   ///< bytes of a group

  std::span<const uint16_t> steps;  ///< step of each row
  uint8_t zeroRowField = 0;         ///< row field that stands for row 0 beside 0 itself
  uint16_t firstValue = 0;          ///< value before the first command
  uint16_t maxValue = 0;            ///< samples are held to 0 ... maxValue
  uint8_t firstSampleBits =
      16;                ///< below 12: a frame's first sample lands on a grid of so many bits
  uint8_t rawShift = 0;  ///< a raw byte is the sample shifted right by this

  /// Body bytes of a frame of `samples`.
  constexpr uint32_t FrameBodySize(uint32_t samples) const {
    return samples / groupCodes * groupSize;
  }
};

/// The step of each row of the plain coder: 8 a row.
inline constexpr std::array<uint16_t, 16> kPlainSteps = {8,  16, 24, 32, 40,  48,  56,  64,
                                                         72, 80, 88, 96, 104, 112, 120, 128};

inline constexpr StreamGrammar kMpmGrammar = {
    .name = "MPM",
    .commands = {0, 1, 2, 3, 4, 5, 6, 7, 8},
    .commandMask = 0x0F,
    .endSize = 1,
    .row = {.byte = 0, .shift = 4, .width = 4},
    .startHigh = {.byte = 1, .shift = 0, .width = 8},
    .frameHeadSize = 2,
    .rawCountSize = 2,
    .eventPlace = EventPlace::kAtEnd,
    .shortFrame = 16,
    .longFrame = 64,
    .packing = CodePacking::kSignsAndNibbles,
    .groupCodes = 8,
    .groupSize = 5,
    .steps = kPlainSteps,
    .zeroRowField = 14,
    .firstValue = 2047,
    .maxValue = 4095,
    .firstSampleBits = 16,
    .rawShift = 4,
};

}  // namespace velora
