// The module as a host loads it.
#include <gtest/gtest.h>
#include <velora/I_VLRPropertyWizard.h>

#include "platform/Module.h"
#include "platform/ModuleExports.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

const std::string kModule = std::string(VELORA_MODULE_DIR) + "/VeloraUtil.so";

TEST(Module, ExportsOneNameAndIsUnmapped) {
  const auto exports = ListModuleExports(Path::Native(kModule));
  ASSERT_TRUE(exports) << exports.Message();
  EXPECT_EQ(exports.Value(), std::vector<std::string>{kCreateServiceInstance});
  {
    const auto module = LoadedModule::Load(Path::Native(kModule));
    ASSERT_TRUE(module) << module.Message();
    EXPECT_TRUE(LoadedModule::IsLoaded(kModule));
  }
  EXPECT_FALSE(LoadedModule::IsLoaded(kModule));
}

TEST(Module, OnlyServiceOneIsThere) {
  const auto module = LoadedModule::Load(Path::Native(kModule));
  ASSERT_TRUE(module);
  const auto create = reinterpret_cast<CreateWizardFunction>(module->Find(kCreateServiceInstance));
  ASSERT_TRUE(create);
  int place = 0;
  auto* const mark = reinterpret_cast<I_VLRPropertyWizard*>(&place);
  for (const int32_t id : {0, 2, -1, 3}) {
    I_VLRPropertyWizard* out = mark;
    EXPECT_EQ(create(id, &out), 0);
    EXPECT_EQ(out, mark);
  }
  EXPECT_EQ(create(kWizardService, nullptr), 0);
}

/// Each operation at its slot, on a wizard that was made through the export.
TEST(Module, TheTableOfTheWizard) {
  const auto module = LoadedModule::Load(Path::Native(kModule));
  ASSERT_TRUE(module);
  const auto create = reinterpret_cast<CreateWizardFunction>(module->Find(kCreateServiceInstance));
  I_VLRPropertyWizard* wizard = nullptr;
  ASSERT_EQ(create(kWizardService, &wizard), 1);
  const RawTable table(wizard);
  I_WindowHost* const noWindows = nullptr;
  I_ProjectHost* const noProject = nullptr;
  const auto text = [](const char* t) { return t; };
  EXPECT_EQ(table.Call<int32_t>(1, noWindows, text("L668H080")), 1);
  EXPECT_STREQ(table.Call<const char*>(6), "L668H080");
  EXPECT_EQ(table.Call<int32_t>(2, int32_t{1}, noProject, uint32_t{0}, int32_t{1}, int32_t{0},
                                int32_t{0}, int32_t{0}),
            2);
  EXPECT_EQ(table.Call<int32_t>(3, int32_t{1}, noProject, intptr_t{0}, intptr_t{0}), 0);
  EXPECT_EQ(table.Call<int32_t>(4), 0);
  const char* const names[] = {"one"};
  EXPECT_EQ(table.Call<int32_t>(5, static_cast<const char* const*>(names), int32_t{1}), 1);
  EXPECT_EQ(table.Call<int32_t>(5, static_cast<const char* const*>(nullptr), int32_t{1}), 0);
  table.Call<void>(0);

  ASSERT_EQ(create(kWizardService, &wizard), 1);
  RawTable(wizard).Call<void>(8);  // the deleting destructor
}

}  // namespace
}  // namespace velora::test
