// The editor of IO expanders: a sibling module's object.
#pragma once

#include <cstdint>

namespace velora {

class I_VeloraPinMapInfoMgr;
class I_WindowHost;

/// Lets the user choose the IO expanders of a pin map. Implemented by the module
/// PortFanoutUtil. The caller owns the object and releases it before it frees the
/// module.
///
/// The order of the operations is the contract. Four raw slots; the table has no
/// destructor.
class I_PortFanoutUtil {
 public:
  /// Slot 0. Takes a copy of the expanders of the pin map.
  virtual void SetPinMap(I_VeloraPinMapInfoMgr* pinMap) = 0;

  /// Slot 1. Shows its window over `parent`, which may be null, and waits. Non-zero
  /// when the user confirmed.
  virtual int32_t Run(I_WindowHost* parent, const char* partNumber) = 0;

  /// Slot 2. Copies the expanders, as the user left them, into the pin map.
  virtual void GetPinMap(I_VeloraPinMapInfoMgr* pinMap) = 0;

  /// Slot 3. The object is gone.
  virtual void Release() = 0;

 protected:
  ~I_PortFanoutUtil() = default;
};

/// The export of the module: non-zero, with the object in `*out`, on success.
using CreatePortFanoutUtilFunction = int32_t (*)(I_PortFanoutUtil** out);
inline constexpr char kCreatePortFanoutUtil[] = "CreatePortFanoutUtil";

}  // namespace velora
