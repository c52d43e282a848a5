#include "curves/WaveformPresentationData.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include <velora/I_WavInfo.h>
#include "foundation/MessageBox.h"
#include "platform/System.h"

namespace velora {
namespace {

/// Columns that are precomputed together.
constexpr int32_t kPiece = 1024;

/// The ceiling of the zoom in columns per sample.
constexpr int64_t kMaxColumnsPerSample = 128;

/// The most that the column array takes, in bytes. No sound or screen needs more; an
/// absurd width is refused before it takes the memory of the machine.
constexpr int64_t kMaxArrayBytes = INT32_MAX;

/// The first column of a run of `count` that stays in a sound of `width` columns.
int32_t HoldFirst(int32_t width, int32_t first, int32_t count) {
  const int64_t last = int64_t{width} - count;
  return static_cast<int32_t>(std::max<int64_t>(0, std::min<int64_t>(first, last)));
}

std::span<const int16_t> StoredSamples(I_WavData& sound, uint32_t frames) {
  const size_t there = sound.GetDataSize() / sizeof(int16_t);
  const size_t count = std::min({size_t{frames}, there, size_t{INT32_MAX}});
  return {reinterpret_cast<const int16_t*>(sound.GetData()), count};
}

/// Whether the samples can be used where they are.
bool CanReadInPlace(I_WavData& sound) {
  return sound.GetWavInfo()->GetContainerBits() == 16 &&
         reinterpret_cast<uintptr_t>(sound.GetData()) % alignof(int16_t) == 0;
}

void ReportNoMemory(int64_t bytes, const char* lineEnd) {
  const std::string text = "Because the 32-bit application limitation, allocate " +
                           std::to_string(bytes) + " bytes memory fail." + lineEnd +
                           GetSystemErrorText(ENOMEM);
  ShowBox(nullptr, text, "Error", kBoxOk | kBoxStop);
}

}  // namespace

// --- The sound ---------------------------------------------------------------

void C_VLRWaveformPresentationData::Detach() {
  sound_ = nullptr;
  copy_.reset();
  pyramid_.Build({});
}

int32_t C_VLRWaveformPresentationData::BindSamples() {
  pieceDone_.clear();
  I_WavInfo* const info = sound_ ? sound_->GetWavInfo() : nullptr;
  if (!info || !sound_->GetData()) return kWaveformBadArgument;
  const uint32_t frames = info->GetFrameCount();
  I_WavData* source = sound_;
  copy_.reset();
  if (!CanReadInPlace(*sound_)) {
    copy_.reset(info->GetContainerBits() == 16 ? sound_->Clone()
                                               : sound_->CreateConverted(16, 16, 1, nullptr));
    source = copy_.get();
  }
  if (!source || !source->GetData()) return kWaveformBadArgument;
  pyramid_.Build(StoredSamples(*source, frames));
  return HasSound() ? kWaveformDone : kWaveformBadArgument;
}

int32_t C_VLRWaveformPresentationData::Attach(I_WavData* sound) {
  Detach();
  sound_ = sound;
  if (const int32_t status = BindSamples(); status != kWaveformDone) {
    Detach();
    return status;
  }
  const int32_t frames = GetFrameCount();
  if (viewWidth_ < frames && !ReplaceColumns(frames, "\n")) return kWaveformNoMemory;
  return kWaveformDone;
}

int32_t C_VLRWaveformPresentationData::SamplesChanged() {
  const int32_t status = BindSamples();
  if (status != kWaveformDone) Detach();
  return status;
}

uint16_t C_VLRWaveformPresentationData::GetChannels() const {
  return HasSound() ? sound_->GetWavInfo()->GetChannels() : uint16_t{0};
}

// --- The column array --------------------------------------------------------

/// A cleared array, in place of the old one or of nothing when memory is short. It
/// comes from calloc, whose fresh pages are 0 without being touched: of an array
/// for an hour of sound only the columns that are asked for cost memory.
bool C_VLRWaveformPresentationData::ReplaceColumns(int64_t count, const char* lineEnd) {
  pieceDone_.clear();
  columns_.reset();
  capacity_ = 0;
  const int64_t bytes = count * static_cast<int64_t>(sizeof(WaveformColumn));
  if (bytes <= kMaxArrayBytes) {
    columns_.reset(static_cast<WaveformColumn*>(
        std::calloc(static_cast<size_t>(count), sizeof(WaveformColumn))));
  }
  if (!columns_) {
    ReportNoMemory(bytes, lineEnd);
    return false;
  }
  capacity_ = count;
  return true;
}

/// Room for `count` columns; those that are there stay.
bool C_VLRWaveformPresentationData::EnsureColumns(int64_t count) {
  if (columns_ && count <= capacity_) return true;
  const std::unique_ptr<WaveformColumn[], FreeMemory> old = std::move(columns_);
  const int64_t oldCount = capacity_;
  std::vector<uint8_t> done = std::move(pieceDone_);
  if (!ReplaceColumns(std::max<int64_t>(count, 1), "\n")) return false;
  if (old) std::copy_n(old.get(), oldCount, columns_.get());
  pieceDone_ = std::move(done);
  return true;
}

int32_t C_VLRWaveformPresentationData::SetViewWidth(int32_t width) {
  if (!HasSound()) return kWaveformNoSound;
  const bool enough = width <= GetFrameCount() || ReplaceColumns(width, "\r\n");
  viewWidth_ = width;
  zoomWidth_ = width;
  pieceDone_.clear();
  return enough ? kWaveformDone : kWaveformNoMemory;
}

// --- Columns -----------------------------------------------------------------

void C_VLRWaveformPresentationData::SetZoom(int32_t width) {
  zoomWidth_ = width;
  pieceDone_.clear();
}

void C_VLRWaveformPresentationData::SetPrecomputed(int32_t flag) {
  precomputed_ = flag;
  SetZoom(zoomWidth_);
}

double C_VLRWaveformPresentationData::GetColumnsPerSample() const {
  return HasSound() ? static_cast<double>(zoomWidth_) / GetFrameCount() : 1.0;
}

bool C_VLRWaveformPresentationData::ZoomIsPrecomputed() const {
  return precomputed_ && HasSound() && zoomWidth_ >= 2 && zoomWidth_ < GetFrameCount();
}

/// Works out those pieces of the whole pass that the run touches and that are not
/// there yet. The array must hold the whole zoom.
void C_VLRWaveformPresentationData::FillPrecomputed(int32_t first, int32_t count) {
  if (count < 1) return;
  if (pieceDone_.empty()) pieceDone_.resize(static_cast<size_t>(zoomWidth_ / kPiece + 1));
  const int32_t lastPiece = (first + count - 1) / kPiece;
  for (int32_t piece = first / kPiece; piece <= lastPiece; ++piece) {
    uint8_t& done = pieceDone_[static_cast<size_t>(piece)];
    if (done) continue;
    const int32_t from = piece * kPiece;
    const int32_t length = std::min(kPiece, zoomWidth_ - from);
    FillColumnsOfWhole(pyramid_, zoomWidth_, from,
                       {columns_.get() + from, static_cast<size_t>(length)});
    done = 1;
  }
}

const WaveformColumn* C_VLRWaveformPresentationData::GetColumns(int32_t first) {
  if (!HasSound() || zoomWidth_ < 2 || zoomWidth_ < viewWidth_) return nullptr;
  if (!ZoomIsPrecomputed()) return GetColumnsAt(zoomWidth_, first, viewWidth_);
  if (!EnsureColumns(zoomWidth_)) return nullptr;
  const int32_t count = std::max(viewWidth_, 0);
  const int32_t held = HoldFirst(zoomWidth_, first, count);
  FillPrecomputed(held, count);
  return columns_.get() + held;
}

const WaveformColumn* C_VLRWaveformPresentationData::GetColumnsAt(int32_t zoomWidth, int32_t first,
                                                                  int32_t count) {
  if (!HasSound() || zoomWidth < 2) return nullptr;
  count = std::max(count, 0);
  if (!EnsureColumns(ZoomIsPrecomputed() ? std::max(count, zoomWidth_) : count)) return nullptr;
  // What is written over counts as precomputed from now on, as after a full pass.
  if (ZoomIsPrecomputed()) FillPrecomputed(0, std::min(count, zoomWidth_));
  const int32_t held = HoldFirst(zoomWidth, first, count);
  const std::span<WaveformColumn> run(columns_.get(), static_cast<size_t>(count));
  if (zoomWidth <= GetFrameCount()) {
    FillColumns(pyramid_, zoomWidth, held, run);
  } else {
    InterpolateColumns(pyramid_, zoomWidth, held, run);
  }
  return columns_.get();
}

// --- Zoom steps --------------------------------------------------------------

void C_VLRWaveformPresentationData::SetHeldZoom(int64_t width) {
  SetZoom(static_cast<int32_t>(std::clamp<int64_t>(width, INT32_MIN, INT32_MAX)));
}

/// N for a zoom near to it, so that doubling and halving meet one column per sample.
int64_t C_VLRWaveformPresentationData::SnapToSamples(int64_t width) const {
  const double ratio = static_cast<double>(width) / GetFrameCount();
  return ratio > 0.95 && ratio < 1.05 ? GetFrameCount() : width;
}

int64_t C_VLRWaveformPresentationData::FirstStepIntoView() const {
  int64_t width = GetFrameCount();
  if (width > viewWidth_) {
    while (width / 2 > std::max(viewWidth_, 0)) width /= 2;
  } else {
    while (width <= viewWidth_) width *= 2;
  }
  return width;
}

int32_t C_VLRWaveformPresentationData::ZoomFit() {
  if (!HasSound()) return kWaveformNoSound;
  SetZoom(viewWidth_);
  return kWaveformDone;
}

int32_t C_VLRWaveformPresentationData::ZoomIn() {
  if (!HasSound()) return kWaveformNoSound;
  if (zoomWidth_ == viewWidth_) {
    SetHeldZoom(FirstStepIntoView());
    return kWaveformDone;
  }
  int64_t width = SnapToSamples(2 * int64_t{zoomWidth_});
  if (limitZoom_) width = std::min(width, kMaxColumnsPerSample * GetFrameCount());
  SetHeldZoom(width);
  return kWaveformDone;
}

int32_t C_VLRWaveformPresentationData::ZoomOut() {
  if (!HasSound()) return kWaveformNoSound;
  SetHeldZoom(SnapToSamples(std::max(zoomWidth_ / 2, viewWidth_)));
  return kWaveformDone;
}

int32_t C_VLRWaveformPresentationData::ZoomToRange(int32_t a, int32_t b) {
  if (!HasSound()) return kWaveformNoSound;
  const int32_t frames = GetFrameCount();
  if (a < 0 || a >= frames || a >= b) return kWaveformBadArgument;
  const int32_t shown = std::min(b, frames - 1) - a + 1;
  const double perSample = static_cast<double>(viewWidth_) / shown;
  if (limitZoom_ && perSample > static_cast<double>(kMaxColumnsPerSample)) {
    SetHeldZoom(kMaxColumnsPerSample * frames);
  } else {
    SetHeldZoom(static_cast<int64_t>(frames * perSample + 0.5));
  }
  return kWaveformDone;
}

}  // namespace velora
