// Action events and silence regions.
#pragma once

#include <cstdint>

#include <velora/I_ActionEvent.h>
#include "foundation/CUString.h"
#include "foundation/Lists.h"

namespace velora {

class C_ActionEvent final : public I_ActionEvent, public C_CUItem {
 public:
  /// Type -1 at millisecond 0xFFFFFFFF.
  C_ActionEvent() = default;
  /// A copy stands in no list yet and has no id.
  C_ActionEvent(const C_ActionEvent&) = default;
  C_ActionEvent& operator=(const C_ActionEvent&) = default;

  uint32_t GetId() const override { return ID; }
  int32_t GetType() const override { return type_; }
  void SetType(int32_t type) override { type_ = type; }
  uint32_t GetTimeMs() const override;
  void SetTimeMs(uint32_t milliseconds) override;
  const char* GetText() const override { return text_.c_str(); }
  void SetText(const char* text) override { text_ = text; }
  int32_t GetParam() const override { return param_; }
  void SetParam(int32_t param) override { param_ = param; }
  uint32_t GetSample() const override;
  void SetSample(uint32_t sample) override;
  uint32_t GetSampleRate() const override { return sampleRate_; }
  void SetSampleRate(uint32_t rate) override { sampleRate_ = rate; }
  uint32_t GetExtra() const override { return extra_; }
  void SetExtra(uint32_t extra) override { extra_ = extra; }

  /// Whether the sample is the master position, and not the time.
  bool IsPositionInSamples() const { return positionInSamples_; }

 private:
  int32_t type_ = -1;
  uint32_t timeMs_ = 0xFFFFFFFF;
  uint32_t sample_ = 0;
  C_CUString text_;
  int32_t param_ = 0;
  uint32_t sampleRate_ = 0;
  uint32_t extra_ = 0;
  bool positionInSamples_ = false;
};

class C_ActionSilenceRegion final : public I_ActionSilenceRegion, public C_CUItem {
 public:
  C_ActionSilenceRegion(uint32_t start, uint32_t length) : start_(start), length_(length) {}

  uint32_t GetId() const override { return ID; }
  void SetStart(uint32_t start) override { start_ = start; }
  uint32_t GetStart() const override { return start_; }
  void SetLength(uint32_t length) override { length_ = length; }
  uint32_t GetLength() const override { return length_; }
  void SetExtra(uint32_t extra) override { extra_ = extra; }
  uint32_t GetExtra() const override { return extra_; }

 private:
  uint32_t start_;
  uint32_t length_;
  uint32_t extra_ = 0;
};

}  // namespace velora
