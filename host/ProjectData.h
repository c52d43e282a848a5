// What a project file says, read and checked; the pin map aside.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/ProjectFacts.h"

namespace velora {

class ProjectStore;

/// A pin of the chip: position of its port, number within the port.
struct PinPlace {
  uint32_t port = 0;
  uint32_t pin = 0;

  bool operator==(const PinPlace&) const = default;
};

/// An OUT pin of the board.
struct OutPin {
  PinPlace place;
  std::string name;  ///< may be empty
};

/// A cell of a hand-made key matrix.
struct MatrixCell {
  uint32_t key = 0;
  PinPlace lineA;
  PinPlace lineB;
};

struct ProjectSetting {
  uint32_t group = 0;
  int32_t number = 0;
  int32_t value = 0;
  std::string key;  ///< as the file spells it
};

struct ProjectSound {
  std::string name;
  std::string path;  ///< native; relative to the folder of the project file
};

struct ProjectData {
  std::string partNumber;
  FactValues facts;
  std::vector<ProjectSound> sounds;  ///< in the order of the file
  std::vector<OutPin> outs;          ///< entry i is OUT i + 1

  // The hand-made pin map, in the project's own order.
  std::vector<MatrixCell> cells;
  std::vector<PinPlace> inputs;
  std::vector<PinPlace> singles;
  std::vector<PinPlace> outputs;
  std::vector<PinPlace> fixed;
  bool HasUserMap() const {
    return !cells.empty() || !inputs.empty() || !singles.empty() || !outputs.empty() ||
           !fixed.empty();
  }

  std::vector<ProjectSetting> settings;

  // Which sections there are: each stands behind an interface of the project.
  bool hasScript = false;
  bool hasOutputs = false;
  bool hasResources = false;
  bool hasSettings = false;
};

/// What is wrong with a project file, a sentence each that names the line.
struct ProjectReport {
  std::vector<std::string> faults;    ///< the project cannot be used
  std::vector<std::string> warnings;  ///< something was passed over
};

/// Reads the host's sections. Entries with a fault keep their defaults.
ProjectData ReadProjectData(ProjectStore& store, ProjectReport& report);

/// "0.3": port position and pin, each from 0 to 255.
std::optional<PinPlace> ParsePinPlace(std::string_view text);
std::string PinPlaceText(const PinPlace& place);

/// "0x101.2" as the section [Settings] names values.
std::string SettingKey(uint32_t group, int32_t number);

}  // namespace velora
