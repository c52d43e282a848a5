#include "audio/WaveFileUtil/WavFileFormat.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/WaveFileUtil/MpmFile.h"
#include "audio/WaveFileUtil/SrcFile.h"
#include "foundation/AsciiText.h"
#include "platform/File.h"

namespace velora {
namespace {

/// The file classes, in the order in which an unknown file is tried on them; those
/// behind kMvclp are not tried when a file is opened through the interface.
enum class FileClass : uint8_t {
  kSrc,
  kWav,
  kKam,
  kKmd,
  kK626Kmd,
  kNewApm,
  kApm,
  kMpm,
  kPc8,
  kLp8,
  kP10,
  kApm6Bit,
  kMdm,
  kMd4,
  kLM4,
  kMD4S,
  kLM4S,
  kMdm6Bit,
  kClp1,
  kClp2,
  kClp3,
  kEam,
  kEmm,
  kE2a,
  kPam,
  kMclp,
  kSbd,
  kKlpc,
  kP16,
  kMdr,
  kK664Mpm,
  kK664Pcm,
  kK664Pcr,
  kL664Md4,
  kRbf,
  kEsb,
  kS08,
  kS16,
  kSam,
  kSmm,
  kMvclp,
  kL664LM4,
  kL664HPcm,
  kL664HPcr,
  kEnSrc,
};
constexpr size_t kOpenedClasses = static_cast<size_t>(FileClass::kMvclp) + 1;
static_assert(kOpenedClasses == 41);
constexpr size_t kProbedClasses = static_cast<size_t>(FileClass::kL664HPcr) + 1;

/// What a probe asks of the value that ReadHeader puts out.
enum class OutRule : uint8_t { kAny, kZero, kNonZero };

/// The question "is this file of format `id`?": the header of this class reads it.
struct ProbeRow {
  uint32_t id;
  FileClass key;
  OutRule out = OutRule::kAny;
};

constexpr ProbeRow kProbes[] = {
    {1, FileClass::kSrc, OutRule::kZero},
    {13, FileClass::kSrc, OutRule::kNonZero},
    {2, FileClass::kWav},
    {3, FileClass::kKam},
    {4, FileClass::kKmd},
    {7, FileClass::kK626Kmd},
    {5, FileClass::kNewApm},
    {5, FileClass::kApm},
    {6, FileClass::kMpm},
    {8, FileClass::kPc8},
    {21, FileClass::kLp8},
    {12, FileClass::kP10},
    {14, FileClass::kApm6Bit},
    {15, FileClass::kMdm},
    {47, FileClass::kMd4},
    {17, FileClass::kMdm6Bit},
    {22, FileClass::kClp1},
    {23, FileClass::kClp2},
    {16, FileClass::kClp3},
    {18, FileClass::kEam},
    {19, FileClass::kEmm},
    {20, FileClass::kE2a},
    {24, FileClass::kPam},
    {27, FileClass::kMclp},
    {28, FileClass::kSbd},
    {29, FileClass::kKlpc},
    {30, FileClass::kP16},
    {37, FileClass::kEsb},
    {39, FileClass::kS08},
    {40, FileClass::kS16},
    {41, FileClass::kSam},
    {42, FileClass::kSmm},
    {43, FileClass::kK664Mpm},
    {44, FileClass::kK664Pcm},
    {46, FileClass::kMvclp},
    {48, FileClass::kMdr},
    {49, FileClass::kK664Pcr},
    {50, FileClass::kLM4},
    {51, FileClass::kMD4S},
    {52, FileClass::kLM4S},
    {53, FileClass::kL664Md4},
    {56, FileClass::kL664LM4},
    {57, FileClass::kL664HPcm},
    {58, FileClass::kL664HPcr},
};
static_assert(std::size(kProbes) == 44);

/// A class as it is made.
struct ClassRow {
  FileClass key;
  uint32_t id;           ///< the format it writes; 0: it only reads
  std::string_view tag;  ///< the first bytes of its files, for telling whose fault counts
  std::unique_ptr<C_WavFile> (*make)();
};

template <typename Class>
std::unique_ptr<C_WavFile> Make() {
  return std::make_unique<Class>();
}

/// The classes there are. Of two with one id the first writes it. A class that is not
/// here is passed over wherever it would be tried.
constexpr ClassRow kClasses[] = {
    {FileClass::kSrc, 1, "KPCM", &Make<C_SrcFile>},
    {FileClass::kWav, 2, "RIFF", &Make<C_WavFile>},
    {FileClass::kMpm, 6, "KMPM", &Make<C_MpmFile>},
    {FileClass::kEnSrc, 13, "KPCM", &Make<C_EnSrcFile>},
};

const ClassRow* FindClass(FileClass key) {
  const auto row = std::ranges::find(kClasses, key, &ClassRow::key);
  return row == std::end(kClasses) ? nullptr : row;
}

const ClassRow* FindClassById(uint32_t id) {
  if (id == 0) return nullptr;
  const auto row = std::ranges::find(kClasses, id, &ClassRow::id);
  return row == std::end(kClasses) ? nullptr : row;
}

bool Accepts(OutRule rule, uint32_t out) {
  return rule == OutRule::kAny || (rule == OutRule::kZero) == (out == 0);
}

/// `readHeader(file, out)` says whether the class takes the file for its own.
template <typename ReadHeader>
bool RunProbe(const ProbeRow& probe, const ReadHeader& readHeader) {
  const ClassRow* row = FindClass(probe.key);
  if (!row) return false;
  const std::unique_ptr<C_WavFile> file = row->make();
  uint32_t out = 0;
  return readHeader(*file, out) && Accepts(probe.out, out);
}

/// The id of the first probe that says yes; 0 for none.
template <typename ReadHeader>
uint32_t FirstProbe(const ReadHeader& readHeader) {
  for (const ProbeRow& probe : kProbes) {
    if (RunProbe(probe, readHeader)) return probe.id;
  }
  return 0;
}

Status LoadScoped(C_WavFile& file, const Path& path, LoadScope scope) {
  switch (scope) {
    case LoadScope::kHeader:
      return file.ReadHeaderFile(path, true, nullptr);
    case LoadScope::kMetadata:
      return file.LoadMetadata(path);
    case LoadScope::kAll:
      break;
  }
  return file.LoadFile(path);
}

/// Why no class opened a file that begins like this, when none of them knows it.
Status UnknownFormat(std::string_view head) {
  std::string name;
  const uint32_t id = GetFormatIdByTag(head);
  if (id == 0 || !GetFormatName(id, name)) return Status::Error("no known sound format");
  return Status::Error("format " + name + " (id " + std::to_string(id) + ") cannot be read");
}

}  // namespace

std::unique_ptr<C_WavFile> MakeWavFile(uint32_t id) {
  const ClassRow* row = FindClassById(id);
  return row ? row->make() : nullptr;
}

bool CanRead(uint32_t id) {
  return std::ranges::any_of(kProbes, [id](const ProbeRow& probe) {
    return probe.id == id && FindClass(probe.key) != nullptr;
  });
}

bool CanWrite(uint32_t id) { return FindClassById(id) != nullptr; }

uint32_t DetectSoundFormat(const Path& path) {
  return FirstProbe(
      [&](C_WavFile& file, uint32_t& out) { return file.ReadInfoFile(path, &out).Ok(); });
}

Result<std::unique_ptr<C_WavFile>> OpenSound(const Path& path, const OpenOptions& options) {
  std::array<char, 4> head{};
  {
    const Result<InputFile> input = InputFile::Open(path);
    if (!input) return input.GetStatus();
    const Result<size_t> got = input.Value().ReadAt(0, std::as_writable_bytes(std::span(head)));
    if (!got) return got.GetStatus();
  }
  const std::string_view headText(head.data(), head.size());
  Status fault;
  for (size_t i = 0; i < kProbedClasses; ++i) {
    const ClassRow* row = FindClass(static_cast<FileClass>(i));
    if (!row) continue;
    std::unique_ptr<C_WavFile> file = row->make();
    file->SetSampleView(options.view);
    Status status = LoadScoped(*file, path, options.scope);
    if (status) return file;
    if (fault && EqualsNoCase(row->tag, headText)) fault = std::move(status);
  }
  return fault ? UnknownFormat(headText) : fault;
}

// --- C_WavFileFormat ---------------------------------------------------------

uint32_t C_WavFileFormat::DetectFormat(const char* path) {
  return FirstProbe([&](C_WavFile& file, uint32_t& out) {
    file.SetOwnerWindow(ownerWindow_);
    return file.ReadHeader(path, 0, &out) != 0;
  });
}

int32_t C_WavFileFormat::IsFormat(uint32_t id, const char* path) {
  const auto probe = std::ranges::find(kProbes, id, &ProbeRow::id);
  if (probe == std::end(kProbes)) return 0;
  return RunProbe(*probe, [&](C_WavFile& file, uint32_t& out) {
    file.SetOwnerWindow(ownerWindow_);
    return file.ReadHeader(path, 0, &out) != 0;
  });
}

I_WavFile* C_WavFileFormat::OpenFile(const char* path, int32_t loadData, uint32_t out) {
  for (size_t i = 0; i < kOpenedClasses; ++i) {
    const ClassRow* row = FindClass(static_cast<FileClass>(i));
    if (!row) continue;
    std::unique_ptr<C_WavFile> file = row->make();
    file->SetOwnerWindow(ownerWindow_);
    const int32_t opened = loadData ? file->Load(path, &out) : file->ReadHeader(path, 1, &out);
    if (opened) return file.release();
  }
  return nullptr;
}

}  // namespace velora
