// `velora module check` finds every fault that is put into a module on purpose.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunVelora.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

using Json = nlohmann::json;

const std::string kBroken = VELORA_BROKEN_MODULES;
const std::string kModules = VELORA_MODULE_DIR;

TEST(ModuleCheck, TheModulesOfTheSystemPass) {
  for (const char* const name : {"VeloraUtil.so", "PartCatalog.so"}) {
    const Outcome outcome = RunVelora({"module", "check", kModules + "/" + name});
    EXPECT_EQ(outcome.status, 0) << name << "\n" << outcome.out << outcome.err;
  }
}

TEST(ModuleCheck, ASoundModulePasses) {
  const Outcome outcome =
      RunVelora({"module", "check", "--json", "--kind", "wizard", kBroken + "/wizard0.so"});
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  const Json report = Json::parse(outcome.out);
  EXPECT_EQ(report["passed"], true);
  EXPECT_GE(report["checks"].size(), 10u);
}

/// Which check finds a fault first, and what it says.
struct Fault {
  int number;
  const char* check;
  const char* says;
};

class BrokenModule : public testing::TestWithParam<Fault> {};

TEST_P(BrokenModule, IsFound) {
  const Fault& fault = GetParam();
  const std::string file = kBroken + "/wizard" + std::to_string(fault.number) + ".so";
  const Outcome outcome =
      RunVelora({"module", "check", "--json", "--timeout", "1", "--kind", "wizard", file});
  EXPECT_EQ(outcome.status, 1) << outcome.out;
  const Json report = Json::parse(outcome.out);
  EXPECT_EQ(report["passed"], false);
  const auto first =
      std::ranges::find_if(report["checks"], [](const Json& check) { return !check["passed"]; });
  ASSERT_NE(first, report["checks"].end());
  EXPECT_EQ((*first)["name"], fault.check);
  const std::string finding = (*first)["finding"];
  EXPECT_NE(finding.find(fault.says), std::string::npos) << finding;
}

INSTANTIATE_TEST_SUITE_P(
    ModuleCheck, BrokenModule,
    testing::Values(
        Fault{1, "slots", "SetOutPinNames"}, Fault{2, "slots", "GetPartNumber"},
        Fault{3, "slots", "Run without a project gave 0, not 2"}, Fault{4, "slots", "Init gave"},
        Fault{5, "null", "CreateServiceInstance"}, Fault{6, "init", "Init"},
        Fault{7, "entry", "CreateServiceInstance"}, Fault{8, "slots", "Run"},
        Fault{9, "exports", "DebugInfo"}, Fault{10, "leaks", "SetOutPinNames keeps about"},
        Fault{11, "leaks", "Init keeps about"}, Fault{12, "leaks", "a wizard keeps about"},
        Fault{13, "entry", "CreateServiceInstance(0) gave 1"},
        Fault{14, "entry", "was to leave alone"},
        Fault{15, "slots", "CreateServiceInstance(1) gave 0"}, Fault{16, "slots", "no object"},
        Fault{17, "slots", "took longer than 1"}, Fault{18, "slots", "Release"},
        Fault{19, "init", "GetPartNumber"}, Fault{20, "objects", "one object"},
        Fault{21, "init", "repeated"}, Fault{22, "init", "Init with null gave 1"},
        Fault{23, "slots", "Run without a project gave 1"},
        Fault{24, "slots", "SetOutPinNames(null) gave 1"},
        Fault{25, "slots", "Init: the process ended itself with status 0"},
        Fault{26, "exports", "expected CreateServiceInstance"}));

TEST(ModuleCheck, WhatIsNoModule) {
  const TempDir dir;
  WriteText(dir / "VeloraUtil.so", "not a module");
  const Outcome text = RunVelora({"module", "check", dir / "VeloraUtil.so"});
  EXPECT_EQ(text.status, 1);
  EXPECT_NE(text.out.find("exports     FAILED  is no module"), std::string::npos) << text.out;
  EXPECT_EQ(RunVelora({"module", "check", dir / "none.so"}).status, 3);
  WriteText(dir / "x.so", "not a module");
  EXPECT_EQ(RunVelora({"module", "check", dir / "x.so"}).status, 3) << "of no known kind";
}

}  // namespace
}  // namespace velora::test
