#include "foundation/FileHelpers.h"

#include "foundation/DynamicLoad.h"
#include "foundation/MsgHandler.h"
#include "foundation/PathText.h"
#include "foundation/StringResources.h"
#include "platform/File.h"

namespace velora {
namespace {

constexpr char kFileStampTitle[] = "File Attributes";

const C_CUFileStamp& GetFileStamp() {
  static const C_CUFileStamp stamp;
  return stamp;
}

}  // namespace

bool FileExists(std::string_view path) { return FileExists(Path::System(path)); }

bool DirExists(std::string_view path) { return DirectoryExists(Path::System(path)); }

bool ResolvePath(std::string_view directory, std::string& path, int32_t keyType,
                 int32_t errorMode) {
  if (IsRelativePath(path)) {
    std::string absolute = MakeAbsolute(directory, path);
    if (absolute.empty()) return false;
    path = std::move(absolute);
  }
  uint32_t message = 0;
  if (keyType == kIniDirectory || keyType == kIniExistingDirectory) {
    if (!DirExists(path)) message = kStringNoSuchDirectory;
  } else if (keyType == kIniFile || keyType == kIniExistingFile) {
    if (!FileExists(path)) message = kStringNoSuchFile;
  }
  if (message == 0) return true;
  GetMsgHandler().ReportById(errorMode, kStringError, message, 0, path.c_str());
  return false;
}

FileTime FileTimeFromSeconds(int64_t seconds) {
  constexpr int64_t kStepsPerSecond = 10000000;
  return static_cast<FileTime>((seconds + kSecondsFrom1601To1970) * kStepsPerSecond);
}

C_CUFileStamp::C_CUFileStamp()
    : module_(LoadModule(JoinPath(GetModuleDir(true), {"FileStamp.dll"}), nullptr, nullptr,
                         /*showError=*/false)) {}

C_CUFileStamp::~C_CUFileStamp() { FreeModule(module_); }

int64_t C_CUFileStamp::GetFileLength(const Path& file) const {
  if (module_) {
    using Function = int64_t (*)(const char*);
    const auto function = reinterpret_cast<Function>(
        GetExport(module_, "GetFileLen", kFileStampTitle, nullptr, true));
    return function ? function(NativeForReading(file).c_str()) : -1;
  }
  const Result<InputFile> input = InputFile::Open(file);
  return input ? static_cast<int64_t>(input->Size()) : -1;
}

bool C_CUFileStamp::GetFileTimes(const Path& file, FileTime* creation, FileTime* access,
                                 FileTime* write) const {
  if (module_) {
    using Function = int32_t (*)(const char*, FileTime*, FileTime*, FileTime*);
    const auto function = reinterpret_cast<Function>(
        GetExport(module_, "GetFileTimes", kFileStampTitle, nullptr, true));
    return function && function(NativeForReading(file).c_str(), creation, access, write) != 0;
  }
  const Result<InputFile> input = InputFile::Open(file);
  if (!input) return false;
  *creation = FileTimeFromSeconds(input->Times().creation);
  *access = FileTimeFromSeconds(input->Times().access);
  *write = FileTimeFromSeconds(input->Times().write);
  return true;
}

int64_t GetFileLength(const Path& file) { return GetFileStamp().GetFileLength(file); }

bool GetFileTimes(const Path& file, FileTime* creation, FileTime* access, FileTime* write) {
  return GetFileStamp().GetFileTimes(file, creation, access, write);
}

}  // namespace velora
