// The framed delta coder of the chips.
//
// A coded sound is a chain of frames. A frame is one header byte and one code
// byte (signed) a sample; an end mark closes the chain:
//
//   header   bit 0: the frame is a long one; bits 1 to 7: row of the step table
//   code     the next sample is the one before plus code x step of the row
//
// Samples are 12-bit offset binary in 16-bit words: 0 to 4095, silence 2048. How
// a file packs header and codes is the file class's business.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/Status.h"

namespace velora {

class I_ProgressCallback;

/// One row of a step table.
struct MdpcmStep {
  uint16_t limit;  ///< largest difference of neighbouring samples that the row follows
  uint16_t step;   ///< what one unit of a code adds
};

/// How the samples are made up that the last frame has beyond the sound's end.
enum class MdpcmPadding : uint8_t {
  kTowardSilence = 0,  ///< in steps of 16 and 8 towards 2048
  kTowardZero = 1,     ///< in steps of 16 and 8 down to 0
  kHold = 2,           ///< the last sample again
};

/// The value that follows `value` beyond the sound's end.
uint16_t PadMdpcmSample(MdpcmPadding padding, uint16_t value);

/// Coder of the family's root: 16 rows of steps 8 to 128, codes -16 to 15, the
/// nearest code chosen directly. Later members change the table, the range of
/// the codes or the search, and keep frames and end mark.
///
/// An object serves one sound at a time.
class C_MDPCMEncDec {
 public:
  /// With `avoidZeroHeader` no header has the row field 0, so that a zero byte can
  /// close the stream: row 0 is written as 14, and what needs row 14 takes row 15.
  /// `firstSampleBits` below 12 snaps the first sample of each frame to a grid of
  /// that many bits; a file then can state it in as many.
  C_MDPCMEncDec(bool avoidZeroHeader, unsigned firstSampleBits);
  C_MDPCMEncDec(const C_MDPCMEncDec&) = delete;
  C_MDPCMEncDec& operator=(const C_MDPCMEncDec&) = delete;
  virtual ~C_MDPCMEncDec() = default;

  /// Codes all samples into long frames, then short ones, and the end mark. `out`
  /// must have GetRequiredSize bytes. `firstValue` is the sample before the first.
  /// Returns the bytes written, 0 when `out` is too small.
  virtual size_t Encode(unsigned longLength, unsigned shortLength,
                        std::span<const uint16_t> samples, std::span<uint8_t> out,
                        MdpcmPadding padding, uint16_t firstValue,
                        I_ProgressCallback* progress = nullptr);

  /// Decodes up to the end mark; `out` needs room for CountSamples. Returns the
  /// samples written. An error for a stream without end mark, a header whose row
  /// the table lacks, or too little room.
  virtual Result<size_t> Decode(unsigned longLength, unsigned shortLength,
                                std::span<const uint8_t> stream, std::span<uint16_t> out,
                                uint16_t firstValue, I_ProgressCallback* progress = nullptr);

  /// Bytes that Encode may write for `count` samples, with room to spare.
  virtual size_t GetRequiredSize(unsigned longLength, unsigned shortLength, size_t count);

  /// Samples that the stream decodes to, from its headers alone; an error as for Decode.
  virtual Result<size_t> CountSamples(unsigned longLength, unsigned shortLength,
                                      std::span<const uint8_t> stream);

  /// Splits `count` samples into frames. The counts are read with the getters below.
  virtual void PlanFrames(size_t count, unsigned longLength, unsigned shortLength);

  uint32_t GetLongFrameCount() const { return longFrameCount_; }
  uint32_t GetShortFrameCount() const { return shortFrameCount_; }
  /// Samples that the last frame of the plan adds beyond the sound's end.
  uint16_t GetPadSamples() const { return padSamples_; }

  void SetEndMark(uint8_t mark) { endMark_ = mark; }
  uint8_t GetEndMark() const { return endMark_; }

 protected:
  /// What the members of the family differ in.
  struct Facts {
    std::span<const MdpcmStep> steps;
    int maxCode;
    int minCode;
  };
  C_MDPCMEncDec(const Facts& facts, bool avoidZeroHeader, unsigned firstSampleBits);

  /// Codes the `length` samples from `start` on as one frame.
  virtual void EncodeFrame(std::span<const uint16_t> samples, size_t start, unsigned length,
                           bool isLong, MdpcmPadding padding);

  /// The row for a frame, and the field that its header states it by.
  struct RowChoice {
    unsigned row;
    unsigned field;
  };
  RowChoice ChooseRow(unsigned largestDifference) const;
  /// The row that a header's field means; nothing for a field without a row.
  bool RowOfField(unsigned field, unsigned& row) const;

  uint16_t SnapFirstSample(uint16_t value) const;
  void Put(int code) { out_[outPosition_++] = static_cast<uint8_t>(code); }

  Facts facts_;
  uint32_t lastSample_ = 0;  ///< the last reconstructed value

 private:
  unsigned LargestDifference(std::span<const uint16_t> samples, size_t start, unsigned length,
                             MdpcmPadding padding) const;

  /// Exact division of numbers below 2^17 by a step of at most 128, as a product.
  struct Divisor {
    explicit Divisor(unsigned divisor)
        : value(divisor), reciprocal((uint64_t{1} << 32) / divisor + 1) {}
    unsigned Divide(unsigned number) const {
      return static_cast<unsigned>(number * reciprocal >> 32);
    }
    unsigned value;
    uint64_t reciprocal;
  };
  unsigned EncodeSample(unsigned last, int difference, Divisor step);

  uint32_t longFrameCount_ = 0;
  uint32_t shortFrameCount_ = 0;
  uint16_t padSamples_ = 0;
  bool avoidZeroHeader_;
  unsigned firstSampleBits_;
  std::span<uint8_t> out_;
  size_t outPosition_ = 0;
  uint8_t endMark_ = 0;
};

}  // namespace velora
