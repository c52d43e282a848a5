// The wizard bound to chips, and what stands in the way of it.
#include "service/VLRPropertyWizard.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "chip/ChipPropertyLoader.h"
#include "foundation/MessageBox.h"
#include "platform/Module.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

namespace fs = std::filesystem;

const std::string kModules = VELORA_MODULE_DIR;

class Windows final : public I_WindowHost {
 public:
  std::vector<std::string> boxes;
  int32_t ShowBox(const char* text, const char* caption, uint32_t) override {
    boxes.push_back(std::string(caption) + ": " + text);
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }
};

struct WizardRelease {
  void operator()(I_VLRPropertyWizard* wizard) const { wizard->Release(); }
};
using Wizard = std::unique_ptr<C_VLRPropertyWizard, WizardRelease>;
Wizard MakeWizard() { return Wizard(new C_VLRPropertyWizard); }

/// A module directory of a test's own, with copies of the real files.
class ModuleFolder {
 public:
  ModuleFolder() : module_(dir_ / "VeloraUtil.so") {
    for (const char* const name : {"PartCatalog.so", "ChipInfo.cfg", "ChipProperty.cfg",
                                   "IOMap.ini", "L647H001_IOMap.ini"}) {
      fs::copy_file(fs::path(kModules) / name, dir_ / name);
    }
  }
  std::string operator/(const std::string& name) const { return dir_ / name; }

 private:
  TempDir dir_;
  ModuleFile module_;
};

TEST(Wizard, BindsToAChip) {
  const ModuleFile module(kModules + "/VeloraUtil.so");
  const Wizard wizard = MakeWizard();
  EXPECT_EQ(wizard->GetPwmPinRanges(), nullptr);
  ASSERT_EQ(wizard->Init(nullptr, "L668H080"), 1);
  EXPECT_STREQ(wizard->GetPartNumber(), "L668H080");
  ASSERT_TRUE(wizard->GetPwmPinRanges());
  ASSERT_TRUE(wizard->GetReservedPinRanges());
  EXPECT_GT(wizard->GetPwmPinRanges()->GetCount(), 0);
  EXPECT_TRUE(wizard->GetChipProperty()->IsA(kFamilySdsL668H));
  EXPECT_EQ(wizard->GetPortMap().begin()->second, 0u) << "the first port has the code 0";
}

TEST(Wizard, EveryPartOfTheCatalogueGetsItsPortMap) {
  const ModuleFile module(kModules + "/VeloraUtil.so");
  struct Case {
    const char* part;
    const char* file;  ///< of the port map; empty: the record
  };
  for (const Case& c : {Case{"L647H001", "L647H001_IOMap.ini"},
                        {"L647A040", "IOMap.ini"},
                        {"l668h080", "IOMap.ini"},
                        {"K664A100", "IOMap.ini"}}) {
    SCOPED_TRACE(c.part);
    const Wizard wizard = MakeWizard();
    ASSERT_EQ(wizard->Init(nullptr, c.part), 1);
    C_CUIniFile file;
    ASSERT_TRUE(file.Load(Path::Native(kModules + "/" + c.file)));
    EXPECT_EQ(wizard->GetPortMap(), ReadPortAddresses(file).codes);
    EXPECT_GE(wizard->GetPortMap().size(), 3u);
  }
  const Wizard wizard = MakeWizard();
  ASSERT_EQ(wizard->Init(nullptr, "VM0A032"), 1);
  EXPECT_EQ(wizard->GetPortMap(), ReadPortNames(*wizard->GetChipProperty()));
  EXPECT_FALSE(wizard->GetPortMap().empty());
}

TEST(Wizard, InitCanBeRepeatedAndFail) {
  const ModuleFile module(kModules + "/VeloraUtil.so");
  const Wizard wizard = MakeWizard();
  ASSERT_EQ(wizard->Init(nullptr, "L647H001"), 1);
  const PortMap before = wizard->GetPortMap();
  EXPECT_EQ(wizard->Init(nullptr, nullptr), 0);
  EXPECT_STREQ(wizard->GetPartNumber(), "");
  EXPECT_EQ(wizard->GetPwmPinRanges(), nullptr);
  EXPECT_EQ(wizard->GetReservedPinRanges(), nullptr);
  EXPECT_EQ(wizard->Run(1, nullptr, 0, 1, 0, 0, 0), kRunFailed);
  ASSERT_EQ(wizard->Init(nullptr, "L668M040"), 1);
  EXPECT_NE(wizard->GetPortMap(), before);
}

TEST(Wizard, OutPinNames) {
  const Wizard wizard = MakeWizard();
  const char* const names[] = {"a", nullptr, "c"};
  EXPECT_EQ(wizard->SetOutPinNames(names, 3), 1);
  EXPECT_EQ(wizard->GetOutPinNames(), (std::vector<std::string>{"a", "", "c"}));
  EXPECT_EQ(wizard->SetOutPinNames(names, 1), 1);
  EXPECT_EQ(wizard->GetOutPinNames(), std::vector<std::string>{"a"});
  EXPECT_EQ(wizard->SetOutPinNames(names, -5), 1);
  EXPECT_TRUE(wizard->GetOutPinNames().empty());
  EXPECT_EQ(wizard->SetOutPinNames(names, 3), 1);
  EXPECT_EQ(wizard->SetOutPinNames(nullptr, 3), 0);
  EXPECT_TRUE(wizard->GetOutPinNames().empty());
}

TEST(Wizard, TheCatalogueLivesAsLongAsAWizard) {
  const ModuleFolder folder;
  const std::string catalogue = folder / "PartCatalog.so";
  Wizard first = MakeWizard();
  Wizard second = MakeWizard();
  EXPECT_FALSE(LoadedModule::IsLoaded(catalogue));
  ASSERT_EQ(first->Init(nullptr, "K668C036"), 1);
  ASSERT_EQ(second->Init(nullptr, "L668H080"), 1);
  first.reset();
  EXPECT_TRUE(LoadedModule::IsLoaded(catalogue));
  EXPECT_GT(second->GetPwmPinRanges()->GetCount(), 0);
  second.reset();
  EXPECT_FALSE(LoadedModule::IsLoaded(catalogue));
  EXPECT_EQ(GetChipCatalog(), nullptr);
}

TEST(Wizard, AMissingPortMapFailsNothing) {
  const ModuleFolder folder;
  fs::remove(folder / "IOMap.ini");
  const Wizard wizard = MakeWizard();
  EXPECT_EQ(wizard->Init(nullptr, "L647H001"), 1);
  EXPECT_FALSE(wizard->GetPortMap().empty());
  EXPECT_EQ(wizard->Init(nullptr, "L647A040"), 1);
  EXPECT_TRUE(wizard->GetPortMap().empty());
}

/// What may lie where the catalogue should be, and what a person sees of it.
TEST(Wizard, AWrongCatalogueIsACleanFailure) {
  struct Case {
    const char* name;
    std::string file;  ///< empty: none
    const char* box;   ///< how the box over the window begins; null: no box
  };
  const std::string broken = VELORA_BROKEN_MODULES;
  const Case cases[] = {
      {"no file", "", "ChipInfo Loader: Load '"},
      {"no module", kModules + "/IOMap.ini", "ChipInfo Loader: Load '"},
      {"no export", broken + "/wizard26.so", nullptr},
      {"answers 0", broken + "/wizard15.so", nullptr},
      {"no object", broken + "/wizard16.so", nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ModuleFolder folder;
    const std::string target = folder / "PartCatalog.so";
    fs::remove(target);
    if (!c.file.empty()) fs::copy_file(c.file, target);
    Windows windows;
    Wizard wizard = MakeWizard();
    EXPECT_EQ(wizard->Init(&windows, "L668H080"), 0);
    EXPECT_EQ(wizard->GetPwmPinRanges(), nullptr);
    ASSERT_EQ(windows.boxes.size(), c.box ? 1u : 0u);
    if (c.box) {
      EXPECT_EQ(windows.boxes.front().find(c.box), 0u) << windows.boxes.front();
    }

    // The right file heals it, without a new wizard.
    fs::remove(target);
    fs::copy_file(kModules + "/PartCatalog.so", target);
    wizard.reset();
    wizard = MakeWizard();
    EXPECT_EQ(wizard->Init(&windows, "L668H080"), 1);
  }
}

TEST(Wizard, AWindowIsForgottenWithTheWizard) {
  const ModuleFile module(kModules + "/VeloraUtil.so");
  Windows windows;
  Wizard wizard = MakeWizard();
  ASSERT_EQ(wizard->Init(&windows, "L668H080"), 1);
  EXPECT_EQ(GetBoxOwner(), &windows);
  wizard.reset();
  EXPECT_EQ(GetBoxOwner(), nullptr);
}

TEST(PortMap, Codes) {
  struct Case {
    const char* text;
    PortMap codes;
  };
  const Case cases[] = {
      {"[Register Mapping]\nIOPort = A, B,C\nA = 16\nB = 0x12\nC = 10100b\n",
       {{"A", 0}, {"B", 0x10002}, {"C", 0x20004}}},
      {"[register mapping]\nIOPort = A,B\nA = 20h\nB = 10h\n", {{"A", 0}, {"B", 0xFFF0}}},
      {"[Register Mapping]\nIOPort = A,B,C\nA = 1\nC = 12x\n",
       {{"A", 0}, {"B", 0xFFFF}, {"C", 0x2000B}}},
      {"[Register Mapping]\nIOPort = A,,C\nA = 1\nC = 2\n", {{"A", 0}}},
      {"[Register Mapping]\nIOPort = A;B\nA = 1\nB = 2\n", {{"A", 0}}},
      {"[Register Mapping]\nIOPort = A,B,A\nA = 1\nB = 2\n", {{"A", 0x20000}, {"B", 0x10001}}},
      {"[Register Mapping]\nA = 1\n", {}},
      {"[Other]\nIOPort = A\nA = 1\n", {}},
      {"", {}},
  };
  for (const Case& c : cases) {
    C_CUIniFile file;
    file.LoadText(c.text);
    EXPECT_EQ(ReadPortAddresses(file).codes, c.codes) << c.text;
  }
}

TEST(PortMap, TheMaskOfTheChipCode) {
  const ModuleFile module("/x/VeloraUtil.so");
  EXPECT_EQ(PortMapFile(0x6476000), "\\X\\L647H001_IOMap.ini");
  EXPECT_EQ(PortMapFile(0x16476ABC), "\\X\\L647H001_IOMap.ini");
  EXPECT_EQ(PortMapFile(0x6475000), "\\X\\IOMap.ini");
}

}  // namespace
}  // namespace velora::test
