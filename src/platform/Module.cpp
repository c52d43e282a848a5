#include "platform/Module.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace velora {
namespace {

/// The file of this platform for a module named with another one's extension.
std::string WithOwnExtension(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  const size_t dot = path.rfind('.');
  const bool hasExtension =
      dot != std::string::npos && (separator == std::string::npos || dot > separator);
  return (hasExtension ? path.substr(0, dot) : path) + ".so";
}

/// dlopen searches its own directories for a name without a slash.
std::string WithDirectory(const std::string& native) {
  return native.find('/') == std::string::npos ? "./" + native : native;
}

}  // namespace

Result<LoadedModule> LoadedModule::Load(const Path& path) {
  std::string file = WithDirectory(NativeForReading(path));
  void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  std::string reason;
  if (!handle) {
    reason = dlerror();
    const Path own = path.IsNative() ? Path::Native(WithOwnExtension(file))
                                     : Path::System(WithOwnExtension(path.Text()));
    const std::string ownFile = WithDirectory(NativeForReading(own));
    if (ownFile != file) {
      handle = dlopen(ownFile.c_str(), RTLD_NOW | RTLD_LOCAL);
      if (handle) {
        file = ownFile;
      } else {
        reason = dlerror();
      }
    }
  }
  if (!handle) return Status::Error(reason);
  LoadedModule module;
  module.handle_ = handle;
  module.file_ = file;
  return module;
}

LoadedModule::LoadedModule(LoadedModule&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), file_(std::move(other.file_)) {}

LoadedModule& LoadedModule::operator=(LoadedModule&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(file_, other.file_);
  return *this;
}

LoadedModule::~LoadedModule() { Unload(handle_); }

void* LoadedModule::Find(const char* name) const { return FindIn(handle_, name); }

void* LoadedModule::Release() { return std::exchange(handle_, nullptr); }

void LoadedModule::Unload(void* handle) {
  if (handle) dlclose(handle);
}

void* LoadedModule::FindIn(void* handle, const char* name) {
  return handle ? dlsym(handle, name) : nullptr;
}

std::string LoadedModule::FileOf(void* handle) {
  link_map* map = nullptr;
  if (!handle || dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) return {};
  return map->l_name;
}

bool LoadedModule::IsLoaded(const std::string& file) {
  void* const handle = dlopen(WithDirectory(file).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
  Unload(handle);
  return handle != nullptr;
}

std::string LoadedModule::FileAt(const void* address) {
  Dl_info info;
  if (!dladdr(address, &info) || !info.dli_fname) return {};
  std::error_code error;
  const std::filesystem::path file = std::filesystem::absolute(info.dli_fname, error);
  return error ? std::string() : file.string();
}

}  // namespace velora
