#include "service/VeloraUtilApp.h"

#include "platform/Module.h"
#include "platform/Path.h"

namespace velora {

CVeloraUtilApp::CVeloraUtilApp(const void* inModule) {
  SetModuleFile(LoadedModule::FileAt(inModule));
}

}  // namespace velora
