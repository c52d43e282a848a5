// The file object: its sound, the boundary operations, the order of steps.
// WavFileRead.cpp and WavFileWrite.cpp hold what a wave file itself needs.

#include "audio/WaveFileUtil/WavFile.h"

#include <cstring>
#include <string_view>

#include "audio/WaveFileUtil/CueFormatConverter.h"
#include "audio/WaveFileUtil/WavFileFormat.h"
#include "audio/wavedata/WavData.h"
#include "foundation/MessageBox.h"

namespace velora {
namespace {

constexpr const char* kLoadErrorCaption = "Load wave error!";

/// Forms of samples as level shaping names them.
constexpr uint32_t kLscOther = 0;
constexpr uint32_t kLscOffset12 = 1;
constexpr uint32_t kLscSigned16 = 2;

uint32_t LscForm(const I_WavInfo& info) {
  if (!info.IsSigned() && info.GetResolutionBits() == 12) return kLscOffset12;
  if (info.IsSigned() && info.GetResolutionBits() == 16) return kLscSigned16;
  return kLscOther;
}

/// Runs steps of a C++ operation, whose callers get every fault as a Status.
template <typename Steps>
Status WithoutExceptions(const Steps& steps) {
  try {
    return steps();
  } catch (const WaveFormatError& error) {
    return Status::Error(error.Reason());
  } catch (const std::bad_alloc&) {
    return Status::Error("out of memory");
  } catch (const std::exception& error) {
    return Status::Error(error.what());
  }
}

/// Sounds learn how to save themselves as soon as file classes are linked.
[[maybe_unused]] const bool kSaveRegistered = (SetSaveSoundFunction(&SaveSound), true);

}  // namespace

bool SaveSound(uint32_t formatId, C_WavData& sound, const Path& path) {
  const std::unique_ptr<C_WavFile> file = MakeWavFile(formatId);
  if (!file) return false;
  file->SetOwnerWindow(sound.OwnerWindow());
  file->AttachWavData(&sound);
  return file->SaveSteps(path).Ok();
}

C_WavFile::C_WavFile() {
  if (auto table = GetModuleCueFormats()) {
    labelConverter_ = std::make_unique<C_CueFormatConverter>(std::move(table));
  }
}

C_WavFile::~C_WavFile() { ReleaseSound(); }

void C_WavFile::Release() {
  if (refCount_ < 1) {
    delete this;
  } else {
    --refCount_;
  }
}

// --- the sound ---------------------------------------------------------------

void C_WavFile::ReleaseSound() {
  if (wavData_ && !attached_) wavData_->Release();
  wavData_ = nullptr;
  attached_ = false;
}

C_WavData& C_WavFile::EnsureSound() {
  if (!wavData_) {
    wavData_ = new C_WavData;
    wavData_->SetOwnerWindow(ownerWindow_);
  }
  return *wavData_;
}

void C_WavFile::AttachWavData(I_WavData* data) {
  ReleaseSound();
  // All sounds there are were made by this library; the interface has no other
  // implementation.
  wavData_ = static_cast<C_WavData*>(data);
  attached_ = data != nullptr;
  if (wavData_) wavData_->GetEventMgr()->SetSampleRate(wavData_->Info().GetSampleRate());
}

I_WavData* C_WavFile::DetachWavData() {
  if (!attached_) return nullptr;
  C_WavData* const data = wavData_;
  wavData_ = nullptr;
  attached_ = false;
  return data;
}

I_WavData* C_WavFile::GetWavData() { return &EnsureSound(); }

I_WavInfo* C_WavFile::GetWavInfo() { return wavData_ ? wavData_->GetWavInfo() : nullptr; }

std::byte* C_WavFile::GetData() { return wavData_ ? wavData_->GetData() : nullptr; }

int32_t C_WavFile::Assign(I_WavData* source) { return EnsureSound().Assign(source); }

void C_WavFile::SetWavInfo(const I_WavInfo* info) { EnsureSound().SetWavInfo(info); }

void C_WavFile::SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                          uint16_t container, int32_t isSigned) {
  EnsureSound().SetFormat(rate, size, channels, resolution, container, isSigned);
}

std::byte* C_WavFile::SetData(const void* bytes, uint32_t size) {
  return EnsureSound().SetData(bytes, size);
}

I_WriteWavParam* C_WavFile::GetWriteParam() {
  return wavData_ ? wavData_->GetWriteParam() : nullptr;
}

int32_t C_WavFile::SaveAs(uint32_t formatId, const char* path) {
  return wavData_ ? wavData_->SaveAs(formatId, path) : 0;
}

int32_t C_WavFile::GetChunkInfo(uint32_t kind, void** out) {
  if (wavData_) return wavData_->GetChunkInfo(kind, out);
  if (out) *out = nullptr;
  return 0;
}

void C_WavFile::CopyWriteParam(I_WavData* source) { EnsureSound().CopyWriteParam(source); }

C_WavData& C_WavFile::BeginSound(uint32_t rate, uint32_t size, uint16_t channels,
                                 uint16_t resolution, uint16_t container, bool isSigned) {
  C_WavData& sound = EnsureSound();
  C_ActionEventMgr& events = *sound.GetEventMgr();
  events.ClearEvents();
  events.ClearSilenceRegions();
  sound.SetSilenceSegments(nullptr);
  sound.CueInfo().Clear();
  sound.SamplerInfo().Clear();
  sound.ListInfo().ClearLabels();
  sound.ListInfo().ClearTexts();
  sound.ExtraChunks().Clear();
  if (sound.GetDataSize() != 0) sound.AllocData(0);
  sound.SetFormat(rate, size, channels, resolution, container, isSigned);
  return sound;
}

// --- treatments --------------------------------------------------------------

void C_WavFile::ConvertWithLsc(void* samples, const I_WavInfo* info) {
  if (!samples || !info || !lscMgr_ || !wavData_) return;
  const C_WriteWavParam& settings = wavData_->WriteParam();
  if (!settings.GetLscEnabled()) return;
  lscMgr_->Process(LscForm(*info), samples, info->GetFrameCount(),
                   static_cast<uint16_t>(settings.GetLscIndex()),
                   static_cast<uint16_t>(settings.GetLscTable()));
}

void C_WavFile::ApplyLve(void* samples, uint32_t frames, int32_t flag) {
  if (!wavData_) return;
  C_WriteWavParam& settings = *wavData_->GetWriteParam();
  const uint8_t mode = settings.GetLveMode();
  uint16_t percents[3] = {100, 100, 100};
  if (lveMgr_ && mode != 0) {
    lveMgr_->Process(samples, frames, wavData_->Info().GetSampleRate(), mode, &percents[0],
                     &percents[1], &percents[2], flag);
  }
  settings.SetLvePercent1(percents[0]);
  settings.SetLvePercent2(percents[1]);
  settings.SetLvePercent3(percents[2]);
}

// --- the boundary ------------------------------------------------------------

template <typename Steps>
int32_t C_WavFile::AtBoundary(const char* path, const Steps& steps) {
  const std::string_view text = path ? path : "";
  if (text.size() > kMaxPathLength) {
    lastStatus_ = Status::Error("path of " + std::to_string(text.size()) + " characters, at most " +
                                std::to_string(kMaxPathLength) + " are taken");
    return 0;
  }
  lastStatus_ = steps(Path::System(text));
  return lastStatus_.Ok();
}

template <typename Steps>
int32_t C_WavFile::WithErrorBox(const char* path, const Steps& steps) {
  try {
    return AtBoundary(path, steps);
  } catch (const std::exception& error) {
    input_.reset();
    lastStatus_ = Status::Error(error.what());
    if (!ownerWindow_) throw;
    const std::string text = *error.what() ? error.what() : "Unknown exception";
    ShowBox(ownerWindow_, text, kLoadErrorCaption, kBoxOk | kBoxStop);
    return 0;
  }
}

int32_t C_WavFile::ReadHeader(const char* path, int32_t load, uint32_t* out) {
  return WithErrorBox(path, [&](const Path& p) { return HeaderSteps(p, load != 0, out); });
}

int32_t C_WavFile::Load(const char* path, uint32_t* out) {
  if (!ReadHeader(path, 1, out)) return 0;
  return ReadData();
}

int32_t C_WavFile::ReadData() {
  lastStatus_ = DataSteps(true);
  return lastStatus_.Ok();
}

int32_t C_WavFile::Save(const char* path) {
  return AtBoundary(path, [&](const Path& p) { return SaveSteps(p); });
}

// --- the C++ side ------------------------------------------------------------

Status C_WavFile::LoadFile(const Path& path, uint32_t* out) {
  return WithoutExceptions([&] { return LoadSteps(path, true, out); });
}

Status C_WavFile::LoadMetadata(const Path& path, uint32_t* out) {
  return WithoutExceptions([&] { return LoadSteps(path, false, out); });
}

Status C_WavFile::ReadInfoFile(const Path& path, uint32_t* out) {
  return ReadHeaderFile(path, false, out);
}

Status C_WavFile::ReadHeaderFile(const Path& path, bool load, uint32_t* out) {
  return WithoutExceptions([&] { return HeaderSteps(path, load, out); });
}

Status C_WavFile::SaveFile(const Path& path) {
  return WithoutExceptions([&] { return SaveSteps(path); });
}

// --- the order of steps ------------------------------------------------------

namespace {

/// Closes the input at the end of an operation, however it ends.
class InputCloser {
 public:
  explicit InputCloser(std::optional<InputFile>& input) : input_(input) {}
  InputCloser(const InputCloser&) = delete;
  InputCloser& operator=(const InputCloser&) = delete;
  ~InputCloser() { input_.reset(); }

 private:
  std::optional<InputFile>& input_;
};

}  // namespace

Status C_WavFile::HeaderSteps(const Path& path, bool load, uint32_t* out) {
  const InputCloser closer(input_);
  temporary_.reset();
  return OnReadHeader(path, load, out);
}

Status C_WavFile::DataSteps(bool samples) {
  if (!wavData_) return Status::Error("there is no sound to read into");
  const InputCloser closer(input_);
  if (!input_) {
    if (Status status = OpenInput(path_); !status) return status;
  }
  if (samples) {
    if (Status status = OnReadSamples(); !status) return status;
  }
  if (Status status = OnReadEvents(); !status) return status;
  wavData_->GetEventMgr()->SetSampleRate(wavData_->Info().GetSampleRate());
  return {};
}

Status C_WavFile::LoadSteps(const Path& path, bool samples, uint32_t* out) {
  const InputCloser closer(input_);
  temporary_.reset();
  if (Status status = OnReadHeader(path, true, out); !status) return status;
  return DataSteps(samples);
}

Status C_WavFile::SaveSteps(const Path& path) {
  if (!wavData_) return Status::Error("there is no sound to save");
  return OnSave(path);
}

Status C_WavFile::OpenInput(const Path& path) {
  // Not `path_ = path` alone: the argument may be the field itself.
  if (&path != &path_) path_ = path;
  Result<InputFile> input = InputFile::Open(path_);
  if (!input) return input.GetStatus();
  input_.emplace(std::move(input.Value()));
  fileSize_ = input_->Size();
  fileTime_.SetFromTimeT(input_->Times().write);
  return {};
}

Status C_WavFile::ReadSamplesAt(uint64_t offset, uint64_t size) {
  if (offset > Input().Size() || size > Input().Size() - offset) {
    return Status::Error("the samples should end at byte " + std::to_string(offset + size) +
                         ", the file has " + std::to_string(Input().Size()));
  }
  // The same place in a page as in the file, so that the system copies whole pages; but
  // samples of any width stay aligned, wherever a foreign file has put them.
  constexpr uint64_t kPageSize = 4096;
  constexpr uint64_t kWidestSample = 4;
  const uint64_t phase = offset % kPageSize / kWidestSample * kWidestSample;
  const std::span<std::byte> block = EnsureSound().AllocDataAt(size, static_cast<unsigned>(phase));
  if (block.size() != size) {
    return Status::Error("no memory for " + std::to_string(size) + " bytes of samples");
  }
  return Input().ReadExactly(offset, block);
}

}  // namespace velora
