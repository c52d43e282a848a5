#include "audio/wavedata/WavData.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

namespace velora {
namespace {

std::atomic<SaveSoundFunction> saveSound{nullptr};

constexpr uint64_t kMaxSize = UINT32_MAX;  // bytes of samples

}  // namespace

void SetSaveSoundFunction(SaveSoundFunction function) { saveSound = function; }

void WavDataRelease::operator()(C_WavData* sound) const { sound->Release(); }

C_WavData::C_WavData() : buffer_(&info_), cueInfo_(&info_) { buffer_.Bind(); }

C_WavData::~C_WavData() = default;

WavDataPtr C_WavData::Create() { return WavDataPtr(new (std::nothrow) C_WavData); }

void C_WavData::Release() {
  if (refCount_ < 1) {
    delete this;
  } else {
    --refCount_;
  }
}

// --- Format ------------------------------------------------------------------

void C_WavData::OnFormatChanged() {
  buffer_.Bind();
  eventMgr_.SetSampleRate(info_.GetSampleRate());
}

void C_WavData::SetWavInfo(const I_WavInfo* info) {
  if (!info) return;
  info_.Assign(info);
  OnFormatChanged();
}

void C_WavData::SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                          uint16_t container, int32_t isSigned) {
  info_.Set(rate, size, channels, resolution, container, isSigned);
  OnFormatChanged();
}

uint64_t C_WavData::FrameCount() const {
  return std::min<uint64_t>(info_.GetFrameCount(), buffer_.FramesInBlock());
}

// --- Memory ------------------------------------------------------------------

void C_WavData::SetSize(uint64_t size) {
  dataSize_ = static_cast<uint32_t>(size);
  info_.SetDataSize(dataSize_);
  buffer_.Bind();
}

void C_WavData::TakeBlock(C_WavDataBuffer& block, uint16_t channels) {
  buffer_.TakeBlock(block);
  info_.SetChannels(channels);
  SetSize(buffer_.Bytes().size());
}

std::byte* C_WavData::AllocData(uint32_t size) {
  SetSize(buffer_.Allocate(size) ? size : 0);
  return GetData();
}

std::span<std::byte> C_WavData::AllocDataAt(uint64_t size, unsigned pagePhase) {
  const bool fits = size <= kMaxSize && buffer_.AllocateAt(size, pagePhase);
  if (!fits) buffer_.Allocate(0);
  SetSize(fits ? size : 0);
  return Bytes();
}

std::byte* C_WavData::SetData(const void* bytes, uint32_t size) {
  if (buffer_.IsExternal() || (size && !bytes)) return nullptr;
  C_WavDataBuffer block(&info_);  // beside the old one, in which the bytes may lie
  if (!block.Allocate(size)) return nullptr;
  if (size) std::memcpy(block.Bytes().data(), bytes, size);
  TakeBlock(block, info_.GetChannels());
  return GetData();
}

void C_WavData::AttachData(void* bytes, uint32_t size) {
  buffer_.Attach(static_cast<std::byte*>(bytes), size);
  SetSize(buffer_.Bytes().size());
}

std::byte* C_WavData::DetachData() {
  std::byte* const bytes = buffer_.Detach();
  if (bytes) dataSize_ = 0;  // the format stays what it was
  return bytes;
}

std::span<uint16_t> C_WavData::Words() {
  const std::span<std::byte> bytes = Bytes();
  if (info_.GetContainerBytes() != sizeof(uint16_t) ||
      reinterpret_cast<uintptr_t>(bytes.data()) % alignof(uint16_t) != 0) {
    return {};
  }
  return {reinterpret_cast<uint16_t*>(bytes.data()), bytes.size() / sizeof(uint16_t)};
}

std::span<const uint16_t> C_WavData::Words() const { return const_cast<C_WavData*>(this)->Words(); }

void C_WavData::InsertBytes(const void* bytes, int32_t offset, int32_t length) {
  if (!bytes || length < 0 || buffer_.IsExternal()) return;
  const auto old = Bytes();
  const uint64_t size = old.size() + static_cast<uint64_t>(length);
  C_WavDataBuffer block(&info_);
  if (size > kMaxSize || !block.Allocate(size)) return;
  const auto front = old.first(std::min<size_t>(old.size(), std::max(offset, 0)));
  auto target = std::ranges::copy(front, block.Bytes().begin()).out;
  target = std::copy_n(static_cast<const std::byte*>(bytes), length, target);
  std::ranges::copy(old.subspan(front.size()), target);
  TakeBlock(block, info_.GetChannels());
}

void C_WavData::DeleteBytes(int32_t offset, int32_t length) {
  if (offset < 0 || length < 0 || buffer_.IsExternal()) return;
  const auto old = Bytes();
  const auto from = static_cast<uint64_t>(offset);
  const uint64_t behind = from + static_cast<uint64_t>(length);
  if (from >= old.size() || behind > old.size()) return;
  C_WavDataBuffer block(&info_);
  if (!block.Allocate(old.size() - static_cast<uint64_t>(length))) return;
  const auto target = std::ranges::copy(old.first(from), block.Bytes().begin()).out;
  std::ranges::copy(old.subspan(behind), target);
  TakeBlock(block, info_.GetChannels());
}

// --- Copies ------------------------------------------------------------------

int32_t C_WavData::Assign(I_WavData* source) {
  if (!source || buffer_.IsExternal()) return 0;
  if (source == this) return 1;
  const std::byte* const bytes = source->GetData();
  if (!SetData(bytes, bytes ? source->GetDataSize() : 0)) return 0;
  SetWavInfo(source->GetWavInfo());
  CopyWriteParam(source);
  return 1;
}

C_WavData* C_WavData::Clone() {
  WavDataPtr copy = Create();
  return copy && copy->Assign(this) ? copy.release() : nullptr;
}

void C_WavData::CopyWriteParam(I_WavData* source) {
  if (source) writeParam_.CopyFrom(*source->GetWriteParam());
}

// --- Saving and metadata -----------------------------------------------------

int32_t C_WavData::SaveAs(uint32_t formatId, const char* path) {
  return path && SaveAsPath(formatId, Path::System(path));
}

bool C_WavData::SaveAsPath(uint32_t formatId, const Path& path) {
  const SaveSoundFunction save = saveSound;
  return dataSize_ != 0 && save && save(formatId, *this, path);
}

int32_t C_WavData::GetChunkInfo(uint32_t kind, void** out) {
  if (!out) return 0;
  switch (kind) {
    case kCueChunk:
      *out = static_cast<I_WavDataCueInfo*>(&cueInfo_);
      return 1;
    case kTextChunk:
      *out = static_cast<I_WavDataTextInfo*>(&textInfo_);
      return 1;
    case kSamplerChunk:
      *out = static_cast<I_WavDataSamplerInfo*>(&samplerInfo_);
      return 1;
    case kListChunk:
      *out = static_cast<I_WavDataListInfo*>(&listInfo_);
      return 1;
    case kExtraChunks:
      *out = static_cast<I_WavDataExtraChunkInfo*>(&extraChunks_);
      return 1;
    default:
      *out = nullptr;
      return 0;
  }
}

}  // namespace velora
