#include "host/Project.h"

#include "host/ProjectCheck.h"
#include "pinmap/ProjectSection.h"

namespace velora {
namespace {

template <typename Interface>
int32_t HandOut(Interface* interface, void** out) {
  *out = interface;
  return 1;
}

constexpr char kNewFile[] =
    "; A project of VeloraUtil. What stands behind a semicolon is a remark and is kept.\n"
    "\n"
    "[Project]\n"
    "Version = 1\n"
    "Part = %PART%\n"
    "SystemClock = %CLOCK%  ; hertz\n"
    "Mode = 1  ; pins by: 1 port, 2 OUT pin, 3 name of OUT pin\n"
    "\n"
    "[Sounds]\n"
    "; bark = sounds/bark.wav\n"
    "\n"
    "[Resources]\n"
    "; What the firmware uses of the chip, and its options: TimerLoadA, OptionA, ...\n"
    "\n"
    "[Outputs]\n"
    "; OUT pins of the board, from 1 on, as position of the port and pin:\n"
    "; Out1 = 0.3\n"
    "; Out1Name = Left eye\n"
    "\n"
    "[Script]\n"
    "; What the script asks for: InputPinCount, MatrixCountA, FeatureFlags, ...\n";

std::string Replaced(std::string text, std::string_view mark, std::string_view by) {
  return text.replace(text.find(mark), mark.size(), by);
}

}  // namespace

Project::Project()
    : script_(data_),
      scriptWithMap_(data_),
      outputs_(data_),
      resources_(data_),
      settings_(data_, store_) {}

std::unique_ptr<Project> Project::Load(const Path& path, ProjectReport& report) {
  std::unique_ptr<Project> project(new Project);
  project->path_ = path;
  if (Status loaded = project->store_.LoadFile(path); !loaded) {
    report.faults.push_back(loaded.Message());
    return nullptr;
  }
  project->Read(report);
  return report.faults.empty() ? std::move(project) : nullptr;
}

std::unique_ptr<Project> Project::LoadText(std::string_view text, ProjectReport& report) {
  std::unique_ptr<Project> project(new Project);
  if (Status loaded = project->store_.LoadProjectText(text); !loaded) {
    report.faults.push_back(loaded.Message());
    return nullptr;
  }
  project->Read(report);
  return report.faults.empty() ? std::move(project) : nullptr;
}

void Project::Read(ProjectReport& report) {
  data_ = ReadProjectData(store_, report);
  pinMap_.Load(&store_);
  CheckProjectText(store_, pinMap_, report);
}

std::unique_ptr<Project> Project::New(std::string_view partNumber, int32_t systemClock,
                                      ProjectReport& report) {
  const std::string clock = std::to_string(systemClock);
  auto project =
      LoadText(Replaced(Replaced(kNewFile, "%PART%", partNumber), "%CLOCK%", clock), report);
  if (!project) return nullptr;
  if (project->data_.partNumber != partNumber) {
    report.faults.push_back("the part number cannot stand on one line of the file");
    return nullptr;
  }
  // What a new pin map has and what an empty section is read as are not the same.
  C_VeloraPinMapInfoMgr fresh;
  project->pinMap_.CopyFrom(nullptr, &fresh, 1);
  return project;
}

Result<std::string> Project::SaveText() {
  // Keys of pins and lists that are gone must not stay behind.
  store_.DeleteSection(kPinMapSection);
  const bool saved = pinMap_.Save(&store_) != 0;
  if (!store_.RefusedValues().empty()) {
    return Status::Error(store_.RefusedValues().front() +
                         ": the value cannot stand on one line of the file");
  }
  if (!saved) return Status::Error("the pin map could not be written");
  return store_.ProjectText();
}

Status Project::Save(const Path& path, const SaveOptions& options) {
  if (const Result<std::string> text = SaveText(); !text) return text.GetStatus();
  return store_.SaveFile(path, options);
}

Status Project::ReadAgain() {
  ProjectReport report;
  data_ = ReadProjectData(store_, report);
  return report.faults.empty() ? Status() : Status::Error(report.faults.front());
}

Status Project::SetEntry(std::string_view section, std::string_view key, std::string_view value) {
  const std::string home(section);
  const std::string label(key);
  if (!store_.SetString(home.c_str(), label.c_str(), std::string(value).c_str(), 1, kIniText, 0)) {
    return Status::Error("[" + home + "] " + label + ": '" + std::string(value) +
                         "' cannot stand on one line of the file");
  }
  return ReadAgain();
}

Status Project::RemoveEntry(std::string_view section, std::string_view key) {
  const std::string home(section);
  const std::string label(key);
  if (!store_.DeleteLabel(home.c_str(), label.c_str())) {
    return Status::Error("there is no '" + label + "' in [" + home + "]");
  }
  return ReadAgain();
}

Path Project::SoundPath(const ProjectSound& sound) const {
  const size_t folder = path_.Text().rfind('/');
  if (sound.path.starts_with('/') || folder == std::string::npos) return Path::Native(sound.path);
  return Path::Native(path_.Text().substr(0, folder + 1) + sound.path);
}

int32_t Project::GetInterface(int32_t id, void** out) {
  if (!out) return 0;
  *out = nullptr;
  switch (id) {
    case kProjectScript:
      if (!data_.hasScript) return 0;
      return data_.HasUserMap() ? HandOut<I_OrvaneInfoMgr>(&scriptWithMap_, out)
                                : HandOut<I_OrvaneInfoMgr>(&script_, out);
    case kProjectOutputs:
      return data_.hasOutputs ? HandOut<I_ProjectOutputs>(&outputs_, out) : 0;
    case kProjectResources:
      return data_.hasResources ? HandOut<I_ProjectResources>(&resources_, out) : 0;
    case kProjectPinMap:
      return HandOut<I_VeloraPinMapInfoMgr>(&pinMap_, out);
    case kProjectSettings:
      return data_.hasSettings ? HandOut<I_ProjectSettings>(&settings_, out) : 0;
    default:
      return 0;
  }
}

int32_t Project::GetSystemClock() {
  return static_cast<int32_t>(data_.facts.Get(Fact::kSystemClock));
}

}  // namespace velora
