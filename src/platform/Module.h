// Modules loaded at run time.
#pragma once

#include <string>
#include <string_view>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// A loaded module. Movable; unloads itself.
class LoadedModule {
 public:
  /// `path` names the module as the system does ("...\Name.dll"): it is looked
  /// for as it stands, then with the extension of this platform ("Name.so").
  static Result<LoadedModule> Load(const Path& path);

  LoadedModule(LoadedModule&& other) noexcept;
  LoadedModule& operator=(LoadedModule&& other) noexcept;
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule();

  /// Address of an export, null when there is none.
  void* Find(const char* name) const;

  /// Native path of the file.
  const std::string& File() const { return file_; }

  /// Gives up ownership: the opaque handle, to be freed with Unload.
  void* Release();
  static void Unload(void* handle);
  static void* FindIn(void* handle, const char* name);
  /// Native path of the file behind a handle, empty when unknown.
  static std::string FileOf(void* handle);

  /// Whether the process has the file of this native path mapped.
  static bool IsLoaded(const std::string& file);

  /// Absolute native path of the module or program that holds the address; empty when
  /// unknown.
  static std::string FileAt(const void* address);

 private:
  LoadedModule() = default;
  void* handle_ = nullptr;
  std::string file_;
};

}  // namespace velora
