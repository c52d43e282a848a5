// A sound as columns at any zoom.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <velora/I_WavData.h>
#include "curves/WaveformColumns.h"
#include "curves/WaveformPyramid.h"

namespace velora {

/// What the operations of C_VLRWaveformPresentationData answer.
enum WaveformStatus : int32_t {
  kWaveformDone = 0,
  kWaveformNoMemory = 1,
  kWaveformBadArgument = 2,
  kWaveformNoSound = 7,
};

/// The zoom state of a waveform view, and its columns. Draws nothing.
///
///   view.Attach(&sound);
///   view.SetViewWidth(pixels);               // shows the whole sound
///   view.ZoomIn();
///   const WaveformColumn* columns = view.GetColumns(scroll);
///
/// The zoom is the number of columns that the whole sound would take; the view
/// shows GetViewWidth() of them. N is the sound's number of frames; sample i is
/// the i-th value stored, so that a sound of several channels should be mixed or
/// split first. Values are 16 bits: a sound of 16-bit containers is read in place
/// and as it stands, any other is converted to signed 16 bits by Attach.
///
/// The sound is borrowed and must outlive its use here. SamplesChanged tells of
/// new values and of a new block in it; until then columns may mix old values with
/// new ones, and a block that was replaced must not be asked for.
///
/// One thread at a time.
class C_VLRWaveformPresentationData {
 public:
  C_VLRWaveformPresentationData() = default;
  C_VLRWaveformPresentationData(const C_VLRWaveformPresentationData&) = delete;
  C_VLRWaveformPresentationData& operator=(const C_VLRWaveformPresentationData&) = delete;

  /// Shows another sound; zoom and view width stay. kWaveformBadArgument, with no
  /// sound shown from then on, for null, for a sound without frames, and for
  /// containers other than 8, 16 and 32 bits.
  int32_t Attach(I_WavData* sound);

  /// To be called when samples of the sound were rewritten, or its block was.
  /// Reads the sound afresh; view and zoom stay. Answers as Attach, which is only
  /// needed for another sound.
  int32_t SamplesChanged();

  /// Width of the view in columns; also becomes the zoom. kWaveformNoSound, with
  /// nothing stored, without a sound.
  int32_t SetViewWidth(int32_t width);

  /// Any width is stored; below 2 there are no columns.
  void SetZoom(int32_t width);

  /// Non-zero: below one column per sample, columns are those of one pass over the
  /// whole sound and are worked out once for each zoom, so that scrolling costs
  /// nothing. The pass is made piece by piece as columns are asked for.
  void SetPrecomputed(int32_t flag);

  /// Non-zero, as it is at first: ZoomIn and ZoomToRange stop at 128 columns per
  /// sample.
  void SetLimitZoom(int32_t flag) { limitZoom_ = flag; }

  /// Null without a sound.
  const int16_t* GetSamples() const { return pyramid_.Samples().data(); }

  /// Frames that are really there; 0 without a sound.
  int32_t GetFrameCount() const { return static_cast<int32_t>(pyramid_.Samples().size()); }

  /// 0 without a sound.
  uint16_t GetChannels() const;

  int32_t GetZoomWidth() const { return zoomWidth_; }
  int32_t GetViewWidth() const { return viewWidth_; }
  int32_t GetPrecomputed() const { return precomputed_; }

  /// The zoom as a ratio; 1.0 without a sound.
  double GetColumnsPerSample() const;

  /// GetViewWidth() columns of the current zoom from `first` on, which is held to
  /// the sound. They are valid until the next call of anything but a getter. Null
  /// without a sound, below a zoom of 2, for a zoom that does not fill the view,
  /// and when memory is short.
  const WaveformColumn* GetColumns(int32_t first);

  /// The same for `count` columns of another zoom, which may leave columns beyond
  /// the sound. They are written over the precomputed ones: set the zoom again
  /// before these are used.
  const WaveformColumn* GetColumnsAt(int32_t zoomWidth, int32_t first, int32_t count);

  /// The zoom steps. kWaveformNoSound, with nothing changed, without a sound.
  ///
  /// The whole sound in the view.
  int32_t ZoomFit();

  /// Twice the zoom; from the whole sound to the smallest halving or doubling of N
  /// that is above the view. A zoom within 5 % of N becomes N.
  int32_t ZoomIn();

  /// Half the zoom, but not less than the view. Within 5 % of N it becomes N.
  int32_t ZoomOut();

  /// Samples `a` to `b`, both shown, over the whole view; `b` is held to the sound.
  /// kWaveformBadArgument unless a is in the sound and below b.
  int32_t ZoomToRange(int32_t a, int32_t b);

 private:
  struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
  };
  struct ReleaseSound {
    void operator()(I_WavData* sound) const { sound->Release(); }
  };

  int32_t BindSamples();
  void Detach();
  bool HasSound() const { return !pyramid_.Samples().empty(); }
  bool ReplaceColumns(int64_t count, const char* lineEnd);
  bool EnsureColumns(int64_t count);
  bool ZoomIsPrecomputed() const;
  void FillPrecomputed(int32_t first, int32_t count);
  void SetHeldZoom(int64_t width);
  int64_t SnapToSamples(int64_t width) const;
  int64_t FirstStepIntoView() const;

  I_WavData* sound_ = nullptr;
  std::unique_ptr<I_WavData, ReleaseSound> copy_;  ///< of a sound that cannot be read in place
  WaveformPyramid pyramid_;

  std::unique_ptr<WaveformColumn[], FreeMemory> columns_;
  int64_t capacity_ = 0;
  std::vector<uint8_t> pieceDone_;  ///< of the precomputed columns; empty: none

  int32_t limitZoom_ = 1;
  int32_t precomputed_ = 0;
  int32_t viewWidth_ = 0;
  int32_t zoomWidth_ = 0;
};

}  // namespace velora
