// A project, as its host shows it to the module.
#pragma once

#include <cstdint>

namespace velora {

/// What GetInterface hands out.
enum ProjectInterface : int32_t {
  kProjectScript = 3,     ///< I_OrvaneInfoMgr
  kProjectOutputs = 6,    ///< I_ProjectOutputs
  kProjectResources = 7,  ///< I_ProjectResources
  kProjectPinMap = 8,     ///< I_VeloraPinMapInfoMgr
  kProjectSettings = 9,   ///< I_ProjectSettings
};

/// The host owns the project and all that it hands out; nothing of it is released by
/// the module, and it stays valid while the project lives. Implemented by hosts; one
/// thread at a time.
///
/// The order of the operations is the contract. Two raw slots; the table has no
/// destructor.
class I_ProjectHost {
 public:
  /// Slot 0. Stores the interface in `*out`, a pointer to the interface class of the
  /// id, and gives non-zero; 0, and `*out` null, when the project has none. The caller
  /// sets `*out` to null before.
  virtual int32_t GetInterface(int32_t id, void** out) = 0;

  /// Slot 1. The chip's system clock in hertz, above 0.
  virtual int32_t GetSystemClock() = 0;

 protected:
  ~I_ProjectHost() = default;
};

/// Asks a project for one of its interfaces; null when it has none.
template <typename Interface>
Interface* GetProjectInterface(I_ProjectHost& project, ProjectInterface id) {
  void* found = nullptr;
  if (!project.GetInterface(id, &found)) return nullptr;
  return static_cast<Interface*>(found);
}

}  // namespace velora
