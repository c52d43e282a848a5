// The interfaces of a project over what its file says.
#pragma once

#include <velora/I_OrvaneInfoMgr.h>
#include <velora/I_OrvaneInfoMgr2.h>
#include <velora/I_ProjectOutputs.h>
#include <velora/I_ProjectResources.h>
#include <velora/I_ProjectSettings.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "host/ProjectData.h"

namespace velora {

// Each borrows the data.

class ProjectScript : public I_OrvaneInfoMgr {
 public:
  explicit ProjectScript(const ProjectData& data) : data_(data) {}
  virtual ~ProjectScript() = default;

  uint32_t GetOutputWord() override;
  int32_t GetMatrixCountA() override;
  int32_t GetMatrixCountB() override;
  int32_t GetSinglePinCount() override;
  int32_t GetInputPinCount() override;
  int32_t GetOutputCountA() override;
  int32_t GetFixedPinCount() override;
  int32_t GetOutputCountB() override;
  uint32_t GetFeatureFlags() override;
  int32_t GetSecondLevelFlag() override;
  int32_t GetFeatureKey() override;
  int32_t GetEventCount() override;

 protected:
  const ProjectData& data_;
};

/// The script of a project with a hand-made pin map.
class ProjectScriptWithMap final : public ProjectScript, public I_OrvaneInfoMgr2 {
 public:
  explicit ProjectScriptWithMap(const ProjectData& data) : ProjectScript(data) {}

  int32_t GetUserMatrixCell(int32_t cell, uint32_t* key, uint32_t* ports, uint32_t* pins) override;
  int32_t GetUserInputPin(int32_t n, uint32_t* port, uint32_t* pin) override;
  int32_t GetUserSinglePin(int32_t n, uint32_t* port, uint32_t* pin) override;
  int32_t GetUserOutputPin(int32_t n, uint32_t* port, uint32_t* pin) override;
  int32_t GetUserFixedPin(int32_t n, uint32_t* port, uint32_t* pin) override;
};

/// A placing of firmware pins as the module told it: entries at equal places belong
/// together.
struct PinPlacing {
  std::vector<uint32_t> keys;  ///< of the matrix alone
  std::vector<uint32_t> ports;
  std::vector<uint32_t> pins;
  int told = 0;  ///< how often it was told
};

struct PinPlacings {
  PinPlacing matrix, fixed, single, input, output;
};

class ProjectOutputs final : public I_ProjectOutputs,
                             private I_TimerRecordSource,
                             private I_SensorRecordSource {
 public:
  explicit ProjectOutputs(const ProjectData& data) : data_(data) {}

  const PinPlacings& Placings() const { return placings_; }

  int32_t GetOutCount() override;
  int32_t GetOutPin(int32_t index, int32_t* port, int32_t* pin) override;
  uint32_t GetTimerFlags() override;
  int32_t GetFirstTimerIndex() override;
  I_TimerRecordSource* GetTimerRecordSource() override;
  int32_t IsUserMapped() override;
  int32_t GetColorCount() override;
  I_SensorRecordSource* GetSensorRecordSource() override;
  int32_t GetLvdLevelCount() override;
  void SetMatrixMap(I_CUElementList<uint32_t>* keys, I_CUElementList<uint32_t>* ports,
                    I_CUElementList<uint32_t>* pins) override;
  void SetFixedMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) override;
  void SetSingleMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) override;
  void SetInputMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) override;
  void SetOutputMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) override;

 private:
  void FillTimerRecord(int32_t* record) override;
  int32_t GetSensorModeA() override;
  int32_t GetSensorModeB() override;

  const ProjectData& data_;
  PinPlacings placings_;
};

class ProjectResources final : public I_ProjectResources {
 public:
  explicit ProjectResources(const ProjectData& data) : data_(data) {}

  uint16_t GetTimerLoadA() override;
  int32_t GetOptionA() override;
  int32_t GetOptionB() override;
  int32_t GetOptionC() override;
  int32_t GetOptionD() override;
  int32_t GetGenValueA() override;
  int32_t GetGenValueB() override;
  int32_t GetGenValueC() override;
  int32_t GetTimerLoadB() override;
  uint32_t GetTimerLoadC() override;
  uint32_t GetTimerLoadD() override;
  uint16_t GetChannelTotal() override;
  int32_t GetTimerPlan() override;
  int32_t GetGroupTimerLoad(int32_t group) override;
  int32_t GetAudioStackFlag() override;

 private:
  const ProjectData& data_;
};

/// Values that are set go to the data and to the store.
class ProjectSettings final : public I_ProjectSettings, private I_SettingsBlock {
 public:
  ProjectSettings(ProjectData& data, ProjectStore& store) : data_(data), store_(store) {}

  I_SettingsBlock* GetSettingsBlock() override { return this; }

 private:
  class Group final : public I_SettingsGroup {
   public:
    Group(ProjectSettings& settings, uint32_t code) : settings_(settings), code_(code) {}
    int32_t GetValue(int32_t number, int32_t defaultValue) override;
    int32_t SetValue(int32_t number, int32_t value) override;

   private:
    ProjectSettings& settings_;
    uint32_t code_;
  };

  I_SettingsGroup* GetGroup(uint32_t code) override;
  ProjectSetting* Find(uint32_t group, int32_t number);

  ProjectData& data_;
  ProjectStore& store_;
  std::map<uint32_t, Group> groups_;
};

}  // namespace velora
