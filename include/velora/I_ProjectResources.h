// What a project already uses of the chip, and its option switches.
#pragma once

#include <cstdint>

namespace velora {

/// Project interface 7. Plain getters without failure. What the counts and switches
/// mean to the firmware is the host's; the module knows which timers and pins they
/// take, and passes the three generator values on unread.
///
/// The order of the operations is the contract. Fifteen raw slots; the table has no
/// destructor.
class I_ProjectResources {
 public:
  virtual uint16_t GetTimerLoadA() = 0;  // 0, non-zero also asks for stack for the curves
  virtual int32_t GetOptionA() = 0;      // 1
  virtual int32_t GetOptionB() = 0;      // 2
  virtual int32_t GetOptionC() = 0;      // 3
  virtual int32_t GetOptionD() = 0;      // 4
  virtual int32_t GetGenValueA() = 0;    // 5, to SetOptionA of the generator
  virtual int32_t GetGenValueB() = 0;    // 6, to SetOptionB
  virtual int32_t GetGenValueC() = 0;    // 7, to SetMemoryInfo

  virtual int32_t GetTimerLoadB() = 0;     // 8, signed; some chips count its low 16 bits
  virtual uint32_t GetTimerLoadC() = 0;    // 9, the low 16 bits count
  virtual uint32_t GetTimerLoadD() = 0;    // 10, the low 16 bits count
  virtual uint16_t GetChannelTotal() = 0;  // 11
  virtual int32_t GetTimerPlan() = 0;      // 12, 1: the first plan
  virtual int32_t GetGroupTimerLoad(int32_t group) = 0;  // 13

  virtual int32_t GetAudioStackFlag() = 0;  // 14

 protected:
  ~I_ProjectResources() = default;
};

}  // namespace velora
