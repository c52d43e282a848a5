// A project as its file says, and as the module sees it.
#include "host/Project.h"

#include <gtest/gtest.h>

#include "foundation/ElementList.h"
#include "host/ProjectDiff.h"
#include "support/RawTable.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

constexpr char kFull[] =
    "[Project]\nVersion = 1\nPart = L668H080\nSystemClock = 4096000 ; slow\nMode = 2\n"
    "[Sounds]\nbark = sounds/bark.wav\nmeow = /abs/meow.wav\n"
    "[Resources]\nTimerLoadA = 1\nOptionA = 2\nOptionB = 3\nOptionC = 4\nOptionD = 5\n"
    "GenValueA = 6\nGenValueB = 7\nGenValueC = 8\nTimerLoadB = -9\nTimerLoadC = 0x1000A\n"
    "TimerLoadD = 11\nChannelTotal = 12\nTimerPlan = 13\nGroupTimerLoad0 = 14\n"
    "AudioStackFlag = 15\n"
    "[Outputs]\nOut1 = 0.3\nOut1Name = Left eye\nOut2 = 2.7\nTimerFlags = 0x101\n"
    "FirstTimerIndex = 3\nTimerRecord = 0x20\nUserMapped = 1\nColorCount = 22\n"
    "SensorModeA = 23\nSensorModeB = 24\nLvdLevelCount = 25\n"
    "[Script]\nOutputWord = 0xDEADBEEF\nMatrixCountA = 31\nMatrixCountB = 32\n"
    "SinglePinCount = 33\nInputPinCount = 34\nOutputCountA = 35\nFixedPinCount = 36\n"
    "OutputCountB = 37\nFeatureFlags = 0x80000000\nSecondLevelFlag = 39\nFeatureKey = 40\n"
    "EventCount = 41\nUserCell0 = 9 0.1 2.3\nUserInput0 = 1.4\nUserSingle0 = 1.5\n"
    "UserOutput0 = 1.6\nUserFixed0 = 1.7\n"
    "[Settings]\n0x101.2 = 1\n257.4 = 196613\n"
    "[VeloraPinMapInfo]\nPin3_Convert = 1\nPin3_OutPortIndex = 2\nColorLEDRx = 0.1\n";

std::unique_ptr<Project> Loaded(const std::string& text) {
  ProjectReport report;
  auto project = Project::LoadText(text, report);
  EXPECT_TRUE(project) << (report.faults.empty() ? "" : report.faults.front());
  return project;
}

template <typename Interface>
RawTable TableOf(Project& project, ProjectInterface id) {
  void* found = nullptr;
  EXPECT_NE(RawTable(static_cast<I_ProjectHost*>(&project)).Call<int32_t>(0, int32_t{id}, &found),
            0);
  return RawTable(static_cast<Interface*>(found));
}

TEST(ProjectTables, Host) {
  const auto project = Loaded(kFull);
  EXPECT_EQ(RawTable(static_cast<I_ProjectHost*>(project.get())).Call<int32_t>(1), 4096000);
  void* found = project.get();
  EXPECT_EQ(project->GetInterface(4, &found), 0);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(project->GetInterface(kProjectPinMap, nullptr), 0);
}

TEST(ProjectTables, Script) {
  const auto project = Loaded(kFull);
  const RawTable table = TableOf<I_OrvaneInfoMgr>(*project, kProjectScript);
  EXPECT_EQ(table.Call<uint32_t>(0), 0xDEADBEEF);
  for (int32_t slot = 1; slot <= 7; ++slot) {
    EXPECT_EQ(table.Call<int32_t>(static_cast<size_t>(slot)), 30 + slot);
  }
  EXPECT_EQ(table.Call<uint32_t>(8), 0x80000000);
  for (int32_t slot = 9; slot <= 11; ++slot) {
    EXPECT_EQ(table.Call<int32_t>(static_cast<size_t>(slot)), 30 + slot);
  }
}

TEST(ProjectTables, HandMadeMap) {
  const auto project = Loaded(kFull);
  auto* const script = GetProjectInterface<I_OrvaneInfoMgr>(*project, kProjectScript);
  auto* const map = dynamic_cast<I_OrvaneInfoMgr2*>(script);
  ASSERT_TRUE(map);
  const RawTable table(map);
  uint32_t key = 0, first = 0, second = 0;
  EXPECT_EQ(table.Call<int32_t>(0, int32_t{0}, &key, &first, &second), 1);
  EXPECT_EQ(key, 9u);
  EXPECT_EQ(first, 0x20000u);   // ports: line B in the high half
  EXPECT_EQ(second, 0x30001u);  // pins
  for (uint32_t slot = 1; slot <= 4; ++slot) {
    EXPECT_EQ(table.Call<int32_t>(slot, int32_t{0}, &first, &second), 1);
    EXPECT_EQ(first, 1u);
    EXPECT_EQ(second, 3 + slot);
    EXPECT_EQ(table.Call<int32_t>(slot, int32_t{1}, &first, &second), 0);
    EXPECT_EQ(table.Call<int32_t>(slot, int32_t{-1}, &first, &second), 0);
  }
  const auto plain = Loaded("[Project]\nPart = X\n[Script]\nInputPinCount = 1\n");
  auto* const without = GetProjectInterface<I_OrvaneInfoMgr>(*plain, kProjectScript);
  ASSERT_TRUE(without);
  EXPECT_EQ(dynamic_cast<I_OrvaneInfoMgr2*>(without), nullptr);
}

TEST(ProjectTables, Resources) {
  const auto project = Loaded(kFull);
  const RawTable table = TableOf<I_ProjectResources>(*project, kProjectResources);
  EXPECT_EQ(table.Call<uint16_t>(0), 1);
  for (int32_t slot = 1; slot <= 7; ++slot) {
    EXPECT_EQ(table.Call<int32_t>(static_cast<size_t>(slot)), slot + 1);
  }
  EXPECT_EQ(table.Call<int32_t>(8), -9);
  EXPECT_EQ(table.Call<uint32_t>(9), 0x1000Au);
  EXPECT_EQ(table.Call<uint32_t>(10), 11u);
  EXPECT_EQ(table.Call<uint16_t>(11), 12);
  EXPECT_EQ(table.Call<int32_t>(12), 13);
  EXPECT_EQ(table.Call<int32_t>(13, int32_t{0}), 14);
  EXPECT_EQ(table.Call<int32_t>(13, int32_t{1}), 0);
  EXPECT_EQ(table.Call<int32_t>(14), 15);
}

TEST(ProjectTables, Outputs) {
  const auto project = Loaded(kFull);
  const RawTable table = TableOf<I_ProjectOutputs>(*project, kProjectOutputs);
  int32_t port = 0, pin = 0;
  EXPECT_EQ(table.Call<int32_t>(0), 2);
  EXPECT_EQ(table.Call<int32_t>(1, int32_t{1}, &port, &pin), 1);
  EXPECT_EQ(port, 2);
  EXPECT_EQ(pin, 7);
  EXPECT_EQ(table.Call<int32_t>(1, int32_t{2}, &port, &pin), 0);
  EXPECT_EQ(table.Call<uint32_t>(2), 0x101u);
  EXPECT_EQ(table.Call<int32_t>(3), 3);
  EXPECT_EQ(table.Call<int32_t>(5), 1);
  EXPECT_EQ(table.Call<int32_t>(6), 22);
  EXPECT_EQ(table.Call<int32_t>(8), 25);
  const RawTable timer(table.Call<I_TimerRecordSource*>(4));
  std::array<int32_t, kTimerRecordWords> record{};
  timer.Call<void>(0, record.data());
  EXPECT_EQ(record[1], 0x20);
  EXPECT_EQ(std::ranges::count(record, 0), kTimerRecordWords - 1);
  const RawTable sensor(table.Call<I_SensorRecordSource*>(7));
  EXPECT_EQ(sensor.Call<int32_t>(0), 23);
  EXPECT_EQ(sensor.Call<int32_t>(1), 24);
}

TEST(ProjectTables, OutputsTakeThePlacing) {
  const auto project = Loaded(kFull);
  const RawTable table = TableOf<I_ProjectOutputs>(*project, kProjectOutputs);
  C_CUElementList<uint32_t> keys, ports, pins;
  for (uint32_t i = 0; i < 2; ++i) {
    keys.Add(10 + i, nullptr);
    ports.Add(20 + i, nullptr);
    pins.Add(30 + i, nullptr);
  }
  using List = I_CUElementList<uint32_t>*;
  table.Call<void>(9, List{&keys}, List{&ports}, List{&pins});
  const PinPlacings& placings = project->Placings();
  EXPECT_EQ(placings.matrix.keys, (std::vector<uint32_t>{10, 11}));
  EXPECT_EQ(placings.matrix.ports, (std::vector<uint32_t>{20, 21}));
  EXPECT_EQ(placings.matrix.pins, (std::vector<uint32_t>{30, 31}));
  const PinPlacing* const others[] = {&placings.fixed, &placings.single, &placings.input,
                                      &placings.output};
  for (size_t i = 0; i < std::size(others); ++i) {
    EXPECT_EQ(others[i]->told, 0);
    ports.Add(static_cast<uint32_t>(40 + i), nullptr);
    table.Call<void>(10 + i, List{&ports}, List{&pins});
    EXPECT_EQ(others[i]->told, 1);
    EXPECT_EQ(others[i]->ports.back(), 40 + i);
    EXPECT_EQ(others[i]->pins, (std::vector<uint32_t>{30, 31}));
  }
}

TEST(ProjectTables, Settings) {
  const auto project = Loaded(kFull);
  const RawTable table = TableOf<I_ProjectSettings>(*project, kProjectSettings);
  const RawTable block(table.Call<I_SettingsBlock*>(0));
  EXPECT_EQ(block.Call<I_SettingsGroup*>(0, uint32_t{0x102}), nullptr);
  const RawTable group(block.Call<I_SettingsGroup*>(0, kSecondLevelGroup));
  EXPECT_EQ(group.Call<int32_t>(0, kSecondLevelRanges, int32_t{9}), 1);
  EXPECT_EQ(group.Call<int32_t>(0, kSecondLevelPinUsed, int32_t{9}), 9);
  EXPECT_EQ(group.Call<int32_t>(0, kSecondLevelPin, int32_t{9}), 0x30005);
  EXPECT_EQ(group.Call<int32_t>(1, kSecondLevelPin, int32_t{0x10003}), 1);
  EXPECT_EQ(group.Call<int32_t>(1, kSecondLevelPinUsed, int32_t{1}), 1);
  EXPECT_EQ(group.Call<int32_t>(0, kSecondLevelPin, int32_t{9}), 0x10003);
  const auto text = project->SaveText();
  ASSERT_TRUE(text);
  EXPECT_NE(text.Value().find("257.4 = 65539\n0x101.3 = 1\n"), std::string::npos) << text.Value();
}

TEST(Project, AnInterfaceIsThereWhenItsSectionIs) {
  const auto bare = Loaded("[Project]\nPart = X\n");
  struct Case {
    int32_t id;
    const char* section;
  };
  for (const Case& c : {Case{3, "Script"}, {6, "Outputs"}, {7, "Resources"}, {9, "Settings"}}) {
    void* found = nullptr;
    EXPECT_EQ(bare->GetInterface(c.id, &found), 0) << c.section;
    const auto other = Loaded("[Project]\nPart = X\n[" + std::string(c.section) + "]\n");
    EXPECT_NE(other->GetInterface(c.id, &found), 0) << c.section;
    EXPECT_NE(found, nullptr);
  }
  void* found = nullptr;
  EXPECT_NE(bare->GetInterface(kProjectPinMap, &found), 0);
  EXPECT_EQ(bare->GetSystemClock(), 8192000);
}

TEST(Project, SourcesOfRecordsMayBeMissing) {
  const auto project = Loaded("[Project]\nPart = X\n[Outputs]\nColorCount = 1\n");
  auto* const outputs = GetProjectInterface<I_ProjectOutputs>(*project, kProjectOutputs);
  ASSERT_TRUE(outputs);
  EXPECT_EQ(outputs->GetTimerRecordSource(), nullptr);
  EXPECT_EQ(outputs->GetSensorRecordSource(), nullptr);
}

TEST(Project, SavingChangesNothingThatDidNotChange) {
  const TempDir dir;
  const std::string path = dir / "p.ini";
  ProjectReport report;
  const auto made = Project::New("L668H080", 8192000, report);
  ASSERT_TRUE(made);
  const PinRecord record{1, 250, 50, 63, 0, 0, nullptr};
  made->PinMap().SetPin(3, 2, 5, kPwmFirmware, 1, 0, 0, &record);
  ASSERT_TRUE(made->Save(Path::Native(path)).Ok());
  std::string text = ReadText(path);
  text.insert(text.find("Pin4_Convert"), "; a remark of mine\nMyKey = my value  \n");
  text.replace(text.find("Pin3_XResolution = 50"), 21, "Pin3_XResolution=050 ;Hz");
  text += "\n[Mine]\nKeep me\n";
  const auto same = Project::LoadText(text, report);
  EXPECT_FALSE(same) << "a line without = is a fault anywhere";
  text = text.substr(0, text.find("Keep me")) + "Keep = me";
  WriteText(path, text);
  report = {};
  const auto project = Project::Load(Path::Native(path), report);
  ASSERT_TRUE(project) << report.faults.front();
  EXPECT_EQ(report.warnings.size(), 1u);
  ASSERT_TRUE(project->Save(Path::Native(path)).Ok());
  EXPECT_EQ(ReadText(path), text);

  // The keys of a pin that is no longer used go, and nothing else.
  const PinRecord unused{};
  project->PinMap().SetPin(3, 0, 0, 0, 0, 0, 0, &unused);
  const std::string saved = project->SaveText().Value();
  EXPECT_EQ(saved.find("Pin3_XResolution"), std::string::npos);
  EXPECT_NE(saved.find("Pin3_Convert = 0\n"), std::string::npos);
  EXPECT_NE(saved.find("; a remark of mine\nMyKey = my value  \n"), std::string::npos);
  EXPECT_TRUE(saved.ends_with("[Mine]\nKeep = me"));
}

TEST(Project, ANewOneHasTheSettingsOfANewPinMap) {
  ProjectReport report;
  const auto project = Project::New("K668C036", 4096000, report);
  ASSERT_TRUE(project);
  const auto again = Loaded(project->SaveText().Value());
  int32_t red = 0;
  again->PinMap().GetLEDMaxLumen(&red, nullptr, nullptr);
  EXPECT_EQ(red, 700);
  EXPECT_EQ(again->GetSystemClock(), 4096000);
  EXPECT_EQ(again->Data().partNumber, "K668C036");
  EXPECT_FALSE(Project::New("X ; Y", 1, report));
  EXPECT_FALSE(Project::New("X\nMode = 9", 1, report));
}

TEST(Project, FaultsNameTheirLine) {
  struct Case {
    const char* text;
    const char* fault;
  };
  const Case cases[] = {
      {"", "has no section [Project]"},
      {"[Project]\n", "[Project] names no Part"},
      {"[Project]\nPart = X\nSystemClock = 4MHz\n",
       "line 3: SystemClock: '4MHz' is no whole number"},
      {"[Project]\nPart = X\nSystemClock = 0\n",
       "line 3: SystemClock: '0' is not from 1 to 2147483647"},
      {"[Project]\nPart = X\nVersion = 2\n", "line 3: Version: '2' is not from 1 to 1"},
      {"[Project]\nPart = X\n[Outputs]\nOut1 = BP0.3\n",
       "line 4: Out1: 'BP0.3' is no PORT.PIN such as 0.3"},
      {"[Project]\nPart = X\n[Outputs]\nOut1 = 0.256\n",
       "line 4: Out1: '0.256' is no PORT.PIN such as 0.3"},
      {"[Project]\nPart = X\n[Script]\nUserCell0 = 1 0.3\n",
       "line 4: UserCell0: '1 0.3' is no KEY PORT.PIN PORT.PIN such as 1 0.3 2.0"},
      {"[Project]\nPart = X\n[Settings]\nwhat = 1\n",
       "line 4: what: is no GROUP.NUMBER such as 0x101.2"},
      {"[Project]\nPart = X\n[Sounds]\nbark =\n", "line 4: bark: names no sound file"},
      {"[Project]\nPart = X\n[VeloraPinMapInfo\n",
       "line 3: '[VeloraPinMapInfo' is neither [section] nor key = value"},
      {"[Project]\nPart = X\n[VeloraPinMapInfo]\nPin0_Convert = yes\n",
       "line 4: Pin0_Convert: 'yes' is not a whole number"},
      {"[Project]\nPart = X\n[VeloraPinMapInfo]\nPin0_Convert = 1\nPin0_OutPortPinIndex = 300\n",
       "line 5: Pin0_OutPortPinIndex: '300' does not fit; it would be read as 44"},
      {"[Project]\nPart = X\n[VLRMotorInfo]\nMotorMode = 3\n",
       "line 4: MotorMode: '3' does not fit; it would be read as 0"},
      {"[Project]\nPart = X\n[VeloraPinMapInfo]\nLEDMixingScale = 1,5\n",
       "line 4: LEDMixingScale: '1,5' is not a number"},
  };
  for (const Case& c : cases) {
    ProjectReport report;
    EXPECT_FALSE(Project::LoadText(c.text, report)) << c.text;
    ASSERT_EQ(report.faults.size(), 1u) << c.text;
    EXPECT_EQ(report.faults.front(), c.fault);
  }
}

TEST(Project, WarningsNameTheirLine) {
  ProjectReport report;
  const auto project = Project::LoadText(
      "[Project]\nPart = X\noptiona = 1\n[Resources]\noptiona = 1\nOptionB = 1\nOptionB = 2\n"
      "[Outputs]\nOut2 = 0.1\n[Mine]\nanything = goes\n",
      report);
  ASSERT_TRUE(project);
  EXPECT_EQ(report.warnings,
            (std::vector<std::string>{
                "line 3: nothing reads 'optiona' in [Project]",
                "line 5: nothing reads 'optiona' in [Resources]; did you mean OptionA",
                "line 6: OptionB stands again in line 7, which counts",
                "line 9: nothing reads 'Out2' in [Outputs]",
            }));
  EXPECT_EQ(project->Data().facts.Get(Fact::kOptionB), 2);
}

TEST(Project, EntriesAreCheckedWhenTheyAreSet) {
  const auto project = Loaded(kFull);
  EXPECT_TRUE(project->SetEntry("Outputs", "Out3", "1.1").Ok());
  EXPECT_EQ(project->Data().outs.size(), 3u);
  EXPECT_TRUE(project->RemoveEntry("Outputs", "Out3").Ok());
  EXPECT_FALSE(project->RemoveEntry("Outputs", "Out3").Ok());
  EXPECT_FALSE(project->SetEntry("Outputs", "Out1", "nowhere").Ok());
  EXPECT_FALSE(project->SetEntry("Sounds", "a", "x;y").Ok());
}

TEST(Project, SoundsAreSeenFromItsFolder) {
  const TempDir dir;
  WriteText(dir / "p.ini", kFull);
  ProjectReport report;
  const auto project = Project::Load(Path::Native(dir / "p.ini"), report);
  ASSERT_TRUE(project);
  ASSERT_EQ(project->Data().sounds.size(), 2u);
  EXPECT_EQ(project->SoundPath(project->Data().sounds[0]).Text(), dir / "sounds/bark.wav");
  EXPECT_EQ(project->SoundPath(project->Data().sounds[1]).Text(), "/abs/meow.wav");
}

std::vector<std::string> Words(Project& a, Project& b) {
  std::vector<std::string> words;
  for (const ProjectDifference& d : CompareProjects(a, b)) {
    words.push_back(d.what + ": " + d.first + " | " + d.second);
  }
  return words;
}

TEST(ProjectDiff, NothingBetweenAProjectAndItself) {
  const auto a = Loaded(kFull);
  const auto b = Loaded(std::string("; remark\n") + kFull);
  EXPECT_EQ(Words(*a, *b), std::vector<std::string>{});
}

TEST(ProjectDiff, TellsDifferencesInWords) {
  const auto a = Loaded(kFull);
  const auto b = Loaded(kFull);
  ASSERT_TRUE(b->SetEntry("Project", "Part", "L668M040").Ok());
  ASSERT_TRUE(b->SetEntry("Resources", "OptionA", "0").Ok());
  ASSERT_TRUE(b->RemoveEntry("Outputs", "SensorModeA").Ok());
  ASSERT_TRUE(b->RemoveEntry("Outputs", "Out2").Ok());
  ASSERT_TRUE(b->SetEntry("Script", "FeatureFlags", "0x10").Ok());
  ASSERT_TRUE(b->SetEntry("Sounds", "growl", "g.wav").Ok());
  ASSERT_TRUE(b->SetEntry("Settings", "0x101.2", "0").Ok());
  const PinRecord record{1, 250, 50, 63, 0, 0, nullptr};
  a->PinMap().SetPin(3, 2, 5, kPwmHardware, 1, 0, 0, &record);
  b->PinMap().SetPin(3, 2, 5, kPwmFirmware, 1, 1, 0x18, &record);
  b->PinMap().SetPin(7, 2, 6, kPwmFirmware, 1, 1, 0, &record);
  b->PinMap().SetConvertMethod(kConvertBam);
  b->PinMap().SetColorLEDx(0.1, 0.222336598546, 0.5);
  EXPECT_EQ(Words(*a, *b), (std::vector<std::string>{
                               "part: L668H080 | L668M040",
                               "sound growl: nothing | g.wav",
                               "option A: 2 | 0",
                               "sensor mode A: 23 | nothing",
                               "OUT2: 2.7 | nothing",
                               "feature flags: 0x80000000 | 0x10",
                               "setting 0x101.2: 1 | 0",
                               "pin 3: kind of PWM: hardware | firmware",
                               "pin 3: keeps its level: no | yes",
                               "pin 3: multiple pins: 0x0 | 0x18",
                               "pin 7: in use: no | yes",
                               "convert method: PWM | BAM",
                               "chromaticity x of blue: 0.126662160307 | 5.000000e-01",
                           }));
}

}  // namespace
}  // namespace velora::test
