// A project: its file, and the interfaces through which the module sees it.
//
// The file is an INI file that a person may edit (docs/formats/project.md):
//
//   [Project]           part number, clock, mode
//   [Sounds]            name = path
//   [Resources]         counts and switches          interface 7
//   [Outputs]           OUT pins and their values    interface 6
//   [Script]            counts, hand-made pin map    interface 3
//   [Settings]          numbered values              interface 9
//   [VeloraPinMapInfo]  the pin map                  interface 8
//   [VLRMotorInfo]      its motor settings
//
// A project has the interface of a section when its file has the section; it always
// has a pin map.
#pragma once

#include <velora/I_ProjectHost.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/ProjectData.h"
#include "host/ProjectInterfaces.h"
#include "host/ProjectStore.h"
#include "pinmap/VeloraPinMapInfoMgr.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

class Project final : public I_ProjectHost {
 public:
  Project(const Project&) = delete;
  Project& operator=(const Project&) = delete;

  /// Reads a project file. Null when it cannot be read or has faults, which the report
  /// then tells.
  static std::unique_ptr<Project> Load(const Path& path, ProjectReport& report);
  static std::unique_ptr<Project> LoadText(std::string_view text, ProjectReport& report);

  /// A new project for a part, with a remark at each section. Null, with a report, for a
  /// part number that a line cannot hold.
  static std::unique_ptr<Project> New(std::string_view partNumber, int32_t systemClock,
                                      ProjectReport& report);

  /// Writes pin map and settings into the text and replaces the file. Refused is what
  /// an INI line cannot hold.
  Status Save(const Path& path, const SaveOptions& options = {});

  /// What Save writes. Writes pin map and settings into the text.
  Result<std::string> SaveText();

  /// Changes an entry of one of the host's sections and reads all of them anew. When
  /// that finds a fault, the message tells it and the project must not be saved.
  Status SetEntry(std::string_view section, std::string_view key, std::string_view value);
  Status RemoveEntry(std::string_view section, std::string_view key);

  const ProjectData& Data() const { return data_; }
  C_VeloraPinMapInfoMgr& PinMap() { return pinMap_; }
  const PinPlacings& Placings() const { return outputs_.Placings(); }

  /// Where a sound of the project is.
  Path SoundPath(const ProjectSound& sound) const;

  int32_t GetInterface(int32_t id, void** out) override;
  int32_t GetSystemClock() override;

 private:
  Project();

  void Read(ProjectReport& report);
  Status ReadAgain();

  ProjectStore store_;
  Path path_;
  ProjectData data_;
  C_VeloraPinMapInfoMgr pinMap_;
  ProjectScript script_;
  ProjectScriptWithMap scriptWithMap_;
  ProjectOutputs outputs_;
  ProjectResources resources_;
  ProjectSettings settings_;
};

}  // namespace velora
