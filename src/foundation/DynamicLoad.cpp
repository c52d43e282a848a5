#include "foundation/DynamicLoad.h"

#include "foundation/CUString.h"
#include "foundation/MessageBox.h"
#include "platform/Module.h"

namespace velora {
namespace {

// The loader's error codes as hosts know them; its reasons are text alone here.
constexpr unsigned long kModuleNotFound = 126;
constexpr unsigned long kProcedureNotFound = 127;

}  // namespace

void* LoadModule(std::string_view path, const char* title, I_WindowHost* parent, bool showError) {
  Result<LoadedModule> module = LoadedModule::Load(Path::System(path));
  if (module) return module->Release();
  if (showError) {
    C_CUString text;
    text.Format("Load '%s' failed !\r\nError Code %lu: %s", std::string(path).c_str(),
                kModuleNotFound, module.Message().c_str());
    ShowBox(parent, text, title ? title : "Load Dll Library", kBoxStop);
  }
  return nullptr;
}

void* GetExport(void* module, const char* name, const char* title, I_WindowHost* parent,
                bool showError) {
  if (!module) return nullptr;
  void* const address = LoadedModule::FindIn(module, name);
  if (!address && showError) {
    C_CUString text;
    text.Format("Get '%s()' address from '%s' failed !\r\nError Code %lu: %s", name,
                LoadedModule::FileOf(module).c_str(), kProcedureNotFound,
                "The module has no such export");
    ShowBox(parent, text, title ? title : "Get Procedure Address", kBoxStop);
  }
  return address;
}

void FreeModule(void* module) {
  if (module) LoadedModule::Unload(module);
}

}  // namespace velora
