// The smallest host: binds the wizard to each part named and prints its part number.
#include <dlfcn.h>
#include <velora/I_VLRPropertyWizard.h>

#include <cstdio>

int main(int argc, char** argv) {
  void* const module = argc > 1 ? dlopen(argv[1], RTLD_NOW) : nullptr;
  if (!module) return std::fprintf(stderr, "usage: host MODULE PART...\n"), 2;
  const auto create = reinterpret_cast<velora::CreateWizardFunction>(
      dlsym(module, velora::kCreateServiceInstance));
  velora::I_VLRPropertyWizard* wizard = nullptr;
  if (!create || !create(velora::kWizardService, &wizard)) return 1;
  int failed = 0;
  for (int i = 2; i < argc; ++i) {
    failed += wizard->Init(nullptr, argv[i]) == 0;
    std::printf("%s\n", wizard->GetPartNumber());
  }
  wizard->Release();
  dlclose(module);
  return failed ? 1 : 0;
}
