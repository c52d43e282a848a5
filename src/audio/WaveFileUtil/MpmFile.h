// The root of the compressed speech formats.
//
// A file keeps the command stream that the chip plays, what that stream decodes
// to, the source samples, the events and the silence, so that a tool can show,
// play and save it again without decoding anything (MpmLayout.h has the records).
//
// The command stream is one command after another; the low nibble of the first
// byte is the command, and all numbers are little-endian:
//
//   0  end of the stream
//   1  silence       u16 length
//   2  silence       u16 length, event
//   3  raw           u8 first sample, u16 count - 1, u8 per further sample
//   4  raw           as 3, event
//   5  short frame   u8 sample before, 2 groups          row in the high nibble
//   6  short frame   as 5, event
//   7  long frame    u8 sample before, 8 groups          row in the high nibble
//   8  long frame    as 7, event
//
// A raw sample is the high 8 of 12 bits. A group is 8 codes in 5 bytes: the signs,
// code i at bit i, then the magnitudes, the earlier of two in the low nibble; a
// code of -16 is sign 1, magnitude 0. An event is its word (EventWord).
//
// The formats that grew from this one keep the frame of work and change pieces:
// facts stand in their MpmTraits, and each piece of the writing is an operation of
// its own that a class may replace.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "audio/WaveFileUtil/ByteSink.h"
#include "audio/WaveFileUtil/MpmFormatBase.h"
#include "audio/WaveFileUtil/SrcFile.h"
#include "audio/codecs/MdpcmEncDec.h"
#include "audio/wavedata/WavData.h"

namespace velora {

/// The commands of a stream, before a format maps them to bytes. The one with an
/// event follows the one without.
enum class StreamCode : uint8_t {
  kEnd,
  kSilence,
  kSilenceEvent,
  kRaw,
  kRawEvent,
  kShortFrame,
  kShortFrameEvent,
  kLongFrame,
  kLongFrameEvent,
};

/// What a stretch of the sound is written as.
enum class SegmentKind : uint8_t { kCoded = 1, kRaw = 2, kSilence = 3 };

/// One row of the plan that a save follows, in order and without overlap.
struct PlanSegment {
  SegmentKind kind;
  uint32_t start;
  uint32_t length;
};

/// A stretch of silence, both ends inclusive.
struct SilenceSpan {
  uint32_t start;
  uint32_t end;
};

/// The facts in which the formats differ.
struct MpmTraits {
  MpmIdentity identity;
  std::array<uint8_t, 9> commandBytes{0, 1, 2, 3, 4, 5, 6, 7, 8};  ///< by StreamCode
  uint16_t longFrame = 64;                                         ///< samples
  uint16_t shortFrame = 16;                                        ///< samples
  uint16_t padValue = 2047;      ///< sample before the first, and past a region's end
  bool eventOnLastFrame = true;  ///< of the frames up to an event; else on the first
  uint32_t regionGranule = 1;    ///< coded regions are multiples of this, in samples
  bool avoidZeroHeader = false;  ///< frames never have row field 0
  uint16_t channels = 1;         ///< that the file states, and that the stream carries
  uint32_t maxRun = 65535;       ///< samples of one silence command
  uint32_t rawLimit = 0x10000;   ///< samples of one raw command
};

/// An event on its way into the stream.
struct StreamEvent {
  bool present = false;
  uint16_t word = 0;
  size_t index = 0;  ///< in the event records
};

/// The event records of a save and how far the stream has come in them.
struct StreamEventCursor {
  std::span<const MpmEventRecord> records;
  size_t index = 0;
};

class C_MpmFile : public T_MpmFormatBase<C_SrcFile> {
 public:
  C_MpmFile();
  explicit C_MpmFile(const MpmTraits& traits);

  std::vector<std::string> ListLosses(const C_WavData& sound) const override;

 protected:
  /// Where a save writes: the head of the file up to the stream's end, and what the
  /// stream decodes to behind a header of its own.
  struct Sinks {
    ByteSink stream;
    ByteSink decoded;
  };

  Status OnSave(const Path& path) override;

  // --- the steps of a save, in order -----------------------------------------

  /// The sound in the form that is coded: 12 bits in 16, offset binary, no word
  /// above 4095. A sound of the caller's own, to be changed freely.
  virtual Result<WavDataPtr> PrepareData(const C_WavData& sound);

  /// Says why the format cannot hold the prepared sound.
  virtual Status CheckData(const C_WavData& prepared) const;

  /// The silence that the plan follows: the sound's regions where it has any, else
  /// the detected segments, detected now if need be.
  virtual std::vector<SilenceSpan> ChooseSilence(C_WavData& sound);

  /// The events as records, by the project's convert method.
  virtual Result<std::vector<MpmEventRecord>> BuildRecords(C_WavData& sound);

  /// Everything of the file up to the stream's end.
  virtual Status WriteBody(const C_WavData& prepared, std::span<const PlanSegment> plan,
                           StreamEventCursor& events, Sinks& sinks);

  virtual void WriteTempHeader(ByteSink& sink, uint32_t rate, uint32_t count) const;
  virtual void MakeHeaders(MpmHeader& header, MpmBlock& block, const C_WavData& prepared,
                           size_t events);

  /// Turns the plan into commands, and closes the stream.
  virtual Status RunPlan(std::span<const uint16_t> samples, std::span<const PlanSegment> plan,
                         StreamEventCursor& events, Sinks& sinks);

  // --- pieces of the stream ----------------------------------------------------

  virtual std::unique_ptr<C_MDPCMEncDec> CreateCodec() const;

  /// Writes the samples from `start` on as frames and raw runs, cut at the events.
  /// `previous` is the decoded sample before, and then the last one. Returns the
  /// samples that the commands reached beyond the region's end.
  virtual Result<uint32_t> EncodeRegion(std::span<const uint16_t> samples, uint32_t start,
                                        uint32_t length, uint16_t& previous,
                                        StreamEventCursor& events, Sinks& sinks);

  /// The event that a record stands for; absent past the end.
  virtual StreamEvent GetEvent(std::span<const MpmEventRecord> records, size_t index) const;

  /// Of a run of decoded samples with the carried one ahead of them, the sample
  /// that the frame of the samples from `index` on is entered by.
  virtual uint16_t GetSampleBefore(std::span<const uint16_t> samples, size_t index) const;

  /// Writes whole frames, the event on one of them.
  virtual Status EncodeFrames(C_MDPCMEncDec& codec, std::span<const uint16_t> samples,
                              uint16_t& previous, const StreamEvent& event, Sinks& sinks);

  /// Writes raw commands of at least two samples, the event on the last.
  virtual void EncodeRaw(std::span<const uint16_t> samples, uint16_t& previous,
                         const StreamEvent& event, Sinks& sinks);

  /// Writes the silence from `start` on, cut at its events. Returns the samples that
  /// the commands reached beyond its end.
  virtual uint32_t EmitSilence(uint32_t start, uint32_t length, uint16_t previous,
                               StreamEventCursor& events, Sinks& sinks);

  uint8_t MapCommand(StreamCode code) const {
    return traits_.commandBytes[static_cast<size_t>(code)];
  }
  /// Samples of a frame command; 0 for other commands.
  virtual unsigned GetFrameCodes(StreamCode code) const;

  // --- the bytes of one command --------------------------------------------------

  virtual void WriteFrame(std::span<const uint8_t> codes, uint16_t before, unsigned row,
                          StreamCode code, const StreamEvent& event, ByteSink& stream);
  virtual void WriteRaw(std::span<const uint16_t> samples, StreamCode code,
                        const StreamEvent& event, ByteSink& stream);
  virtual void WriteSilenceCommand(StreamCode code, uint32_t length, const StreamEvent& event,
                                   ByteSink& stream);
  virtual void WriteEvent(const StreamEvent& event, ByteSink& stream);
  virtual void WriteEnd(ByteSink& stream);

  const MpmTraits& GetTraits() const { return traits_; }
  /// Samples of the next segment that commands have spent already.
  uint32_t carry_ = 0;

 private:
  std::vector<PlanSegment> MakePlan(std::span<const SilenceSpan> silence, uint32_t count,
                                    bool raw) const;
  Status WriteFile(const Path& path, std::span<const uint16_t> samples, const Sinks& sinks,
                   std::span<const MpmEventRecord> records,
                   std::span<const SilenceSpan> silence) const;
  uint16_t SampleAt(std::span<const uint16_t> samples, uint64_t at, uint64_t regionEnd) const;
  uint32_t EncodeShortRun(std::span<const uint16_t> samples, uint64_t start, uint32_t length,
                          uint64_t regionEnd, uint16_t& previous, const StreamEvent& event,
                          Sinks& sinks);

  MpmTraits traits_;
  std::vector<uint8_t> codes_;  // scratch of EncodeFrames
  std::vector<uint16_t> decoded_;
};

}  // namespace velora
