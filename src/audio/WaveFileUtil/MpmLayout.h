// The records of the compressed chip formats, as they stand in a file.
//
//   MpmHeader      62 bytes
//   MpmBlock       14 bytes, "MFRM": where the command stream is
//   the command stream
//   the decoded stream, 16-bit words
//   the source samples, 16-bit words
//   MpmBlock       14 bytes, "MCMD", then the MpmEventRecords
//   SilenceBlock   16 bytes, "KSIL", then the SilenceRecords
//
// and of the plain source format: SourceHeader, then 16-bit words.
//
// All offsets count from the start of the file, all sizes are in bytes, all
// positions in samples.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "foundation/LittleEndian.h"

namespace velora {

using FileTag = std::array<char, 4>;

constexpr FileTag MakeTag(std::string_view text) {
  FileTag tag{};
  for (size_t i = 0; i < tag.size() && i < text.size(); ++i) tag[i] = text[i];
  return tag;
}

struct MpmHeader {
  FileTag tag{};                // of the format, "KMPM"
  le16 version = 0x0110;        //
  le16 headerSize = 62;         //
  le16 channels = 1;            //
  le16 formatCode = 5;          //
  le16 sampleRate;              // hertz
  le16 bandLimit;               // hertz, 85% of half the rate
  le32 fileSize;                //
  le32 eventBlockOffset;        // of "MCMD"
  le32 eventBlockSize;          // the block and its records
  le32 streamBlockOffset = 62;  // of "MFRM"
  le32 streamBlockSize;         // the block and the stream
  le16 streamBits = 12;         //
  le32 samplesOffset;           // of the source samples
  le32 sampleCount;             // words there
  le16 sampleBits = 12;         //
  le32 decodedOffset;           // of the decoded stream
  le32 decodedCount;            // words there
  le16 silenceThreshold;        // 12-bit, 0 when none was set
  le16 silenceLength;           // shortest silence asked for, times rate div 1000
  le16 compressionMethod = 4;   // 4 frames and raw samples, 5 raw samples alone
};
static_assert(sizeof(MpmHeader) == 62);

struct MpmBlock {
  FileTag tag{};        // "MFRM" or "MCMD"
  le16 blockSize = 14;  //
  le32 offset;          // of the stream, or of the first event record
  le32 size;            // bytes of the stream, or event records
};
static_assert(sizeof(MpmBlock) == 14);

#pragma pack(push, 1)
struct MpmEventRecord {
  le32 position;
  uint8_t action = 0;
  uint8_t parameter = 0;
};
#pragma pack(pop)
static_assert(sizeof(MpmEventRecord) == 6);

struct SilenceBlock {
  FileTag tag = MakeTag("KSIL");
  le16 blockSize = 16;
  le16 recordSize = 8;
  le32 offset;  // of the first record
  le32 count;   // records
};
static_assert(sizeof(SilenceBlock) == 16);

struct SilenceRecord {
  le32 start;
  le32 end;  // inclusive
};
static_assert(sizeof(SilenceRecord) == 8);

#pragma pack(push, 1)
struct SourceHeader {
  FileTag tag = MakeTag("KPCM");
  le16 version = 1;
  le16 headerSize = 22;
  le16 channels = 1;
  le16 bits = 12;
  uint8_t flag = 4;  // SourceFlag
  uint8_t reserved = 0;
  le16 sampleRate;  // hertz
  le16 bandLimit;   // hertz, 85% of half the rate
  le32 count;       // words that follow
};
#pragma pack(pop)
static_assert(sizeof(SourceHeader) == 22);

enum SourceFlag : uint8_t { kSourcePlain = 4, kSourceEnciphered = 132 };

/// The highest frequency that a sound of this rate is said to hold.
inline uint16_t BandLimit(uint32_t rate) {
  return static_cast<uint16_t>(static_cast<int>((rate >> 1) * 0.85));
}

/// The 16-bit word that stands for an event in a command stream: the action above
/// the parameter rotated left by two bits.
inline uint16_t EventWord(uint8_t action, uint8_t parameter) {
  const unsigned rotated = (parameter << 2 | parameter >> 6) & 0xFFu;
  return static_cast<uint16_t>(action << 8 | rotated);
}

}  // namespace velora
