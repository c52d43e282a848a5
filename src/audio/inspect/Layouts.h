// The records of the sound files as they stand on disk, and tables that tell a
// person what each of their bytes is.
//
// The tables drive the parse log; docs/formats shows the same tables, and a test
// compares the two.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/LittleEndian.h"

namespace velora::layout {

using FileTag = std::array<char, 4>;

// ---- RIFF and wave ---------------------------------------------------------

struct RiffHeadRecord {
  FileTag tag;   // "RIFF"
  le32 size;     // of what follows
  FileTag form;  // "WAVE"
};
static_assert(sizeof(RiffHeadRecord) == 12);

struct ChunkHeadRecord {
  FileTag tag;
  le32 size;  // of what follows, a pad byte not counted
};
static_assert(sizeof(ChunkHeadRecord) == 8);

struct FmtRecord {
  le16 formatTag;  // 1 PCM, 2 and 17 ADPCM
  le16 channels;
  le32 rate;  // hertz
  le32 byteRate;
  le16 blockAlign;
  le16 bits;
};
static_assert(sizeof(FmtRecord) == 16);

struct CueHeadRecord {
  le32 count;
};
static_assert(sizeof(CueHeadRecord) == 4);

struct CuePointRecord {
  le32 id;
  le32 position;  // in samples
  FileTag chunk;
  le32 chunkStart;
  le32 blockStart;
  le32 sampleOffset;
};
static_assert(sizeof(CuePointRecord) == 24);

struct SamplerHeadRecord {
  le32 manufacturer;
  le32 product;
  le32 samplePeriod;  // nanoseconds
  le32 midiUnityNote;
  le32 midiPitchFraction;
  le32 smpteFormat;
  le32 smpteOffset;
  le32 loopCount;
  le32 samplerDataSize;
};
static_assert(sizeof(SamplerHeadRecord) == 36);

struct LoopRecord {
  le32 id;
  le32 type;
  le32 start;
  le32 end;  // included
  le32 fraction;
  le32 playCount;
};
static_assert(sizeof(LoopRecord) == 24);

struct LabelHeadRecord {
  le32 id;  // the text follows
};
static_assert(sizeof(LabelHeadRecord) == 4);

struct TextRecord {
  le32 id;
  le32 length;  // samples
  std::array<std::byte, 12> zero;
};
static_assert(sizeof(TextRecord) == 20);

// ---- source files ----------------------------------------------------------

struct SourceHeader {
  FileTag tag;  // "KPCM"
  le16 version;
  le16 headerSize;
  le16 channels;
  le16 bits;
  uint8_t flag;  // 4 plain, 132 enciphered
  uint8_t reserved;
  le16 rate;
  le16 bandLimit;
  le32 count;  // words that follow
};
static_assert(sizeof(SourceHeader) == 22);

inline constexpr uint8_t kPlainFlag = 4;
inline constexpr uint8_t kEncipheredFlag = 132;

// ---- MPM and its relatives -------------------------------------------------

struct MpmHeader {
  FileTag tag;  // "KMPM"
  le16 version;
  le16 headerSize;
  le16 channels;
  le16 formatCode;
  le16 rate;
  le16 bandLimit;
  le32 fileSize;
  le32 eventOffset;
  le32 eventSize;
  le32 streamBlockOffset;
  le32 streamBlockSize;
  le16 streamBits;
  le32 sourceOffset;
  le32 sourceCount;
  le16 sourceBits;
  le32 decodedOffset;
  le32 decodedCount;
  le16 silenceThreshold;
  le16 silenceLength;
  le16 method;
};
static_assert(sizeof(MpmHeader) == 62);

struct StreamBlockRecord {
  FileTag tag;  // "MFRM"
  le16 size;
  le32 streamOffset;
  le32 streamSize;
};
static_assert(sizeof(StreamBlockRecord) == 14);

struct EventBlockRecord {
  FileTag tag;  // "MCMD"
  le16 size;
  le32 firstOffset;
  le32 count;
};
static_assert(sizeof(EventBlockRecord) == 14);

struct EventRecord {
  le32 position;
  uint8_t action;
  uint8_t parameter;
};
static_assert(sizeof(EventRecord) == 6);

struct SilenceBlockRecord {
  FileTag tag;  // "KSIL"
  le16 size;
  le16 recordSize;
  le32 firstOffset;
  le32 count;
};
static_assert(sizeof(SilenceBlockRecord) == 16);

struct SilenceRecord {
  le32 start;
  le32 end;  // included
};
static_assert(sizeof(SilenceRecord) == 8);

// ---- what the fields are ---------------------------------------------------

/// How a field's value is shown.
enum class FieldForm : uint8_t {
  kTag,      ///< characters
  kDecimal,  ///< unsigned
  kHex,
  kBytes,
};

/// A row of a layout table. The last two texts are for people: what a sound file
/// of this system holds there, and which other part of the file determines it
/// ("nothing" where nothing does).
struct LayoutField {
  uint32_t offset = 0;
  uint32_t size = 0;
  std::string_view name;
  std::string_view value;
  std::string_view checkedBy;
  FieldForm form = FieldForm::kDecimal;
};

struct Layout {
  std::string_view name;  ///< heading of its table in docs/formats
  uint32_t size = 0;
  std::span<const LayoutField> fields;
};

/// The tables of one format, in the order of its document.
std::span<const Layout> WaveLayouts();
std::span<const Layout> SourceLayouts();
std::span<const Layout> MpmLayouts();

extern const Layout kRiffHeadLayout, kChunkHeadLayout, kFmtLayout, kCueHeadLayout, kCuePointLayout,
    kSamplerHeadLayout, kLoopLayout, kLabelLayout, kTextLayout;
extern const Layout kSourceLayout;
extern const Layout kMpmHeaderLayout, kStreamBlockLayout, kEventBlockLayout, kEventRecordLayout,
    kSilenceBlockLayout, kSilenceRecordLayout;

/// (rate / 2) x 0.85, cut to an integer and to 16 bits: the band limit that every
/// header of this system derives from the sample rate.
constexpr uint16_t BandLimit(uint32_t rate) {
  return static_cast<uint16_t>(static_cast<uint32_t>((rate >> 1) * 0.85));
}

}  // namespace velora::layout
