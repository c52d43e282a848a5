// The OUT pins of a project's board, and what the module tells the project of its pins.
#pragma once

#include <cstdint>

#include <velora/I_CUElementList.h>

namespace velora {

/// 32-bit words of a timer record.
inline constexpr int32_t kTimerRecordWords = 29;

/// The source of the record that tells which timer the outputs use. One raw slot; no
/// destructor.
class I_TimerRecordSource {
 public:
  /// Slot 0. Changes the words that it knows in a record of kTimerRecordWords words
  /// that the caller has preset. Word 1 is the timer's code.
  virtual void FillTimerRecord(int32_t* record) = 0;

 protected:
  ~I_TimerRecordSource() = default;
};

/// The source of the sensor modes. Two raw slots; no destructor.
class I_SensorRecordSource {
 public:
  virtual int32_t GetSensorModeA() = 0;  // 0
  virtual int32_t GetSensorModeB() = 0;  // 1

 protected:
  ~I_SensorRecordSource() = default;
};

/// Project interface 6. Plain getters without failure; the lists handed in by the Set
/// operations are borrowed for the call, and entries at equal places belong together.
///
/// The order of the operations is the contract. Fourteen raw slots; the table has no
/// destructor.
class I_ProjectOutputs {
 public:
  virtual int32_t GetOutCount() = 0;  // 0

  /// Slot 1. Fills port position and pin of an OUT, counted from 0, and gives 1; 0,
  /// with the outputs untouched, for an OUT that there is not.
  virtual int32_t GetOutPin(int32_t index, int32_t* port, int32_t* pin) = 0;

  virtual uint32_t GetTimerFlags() = 0;      // 2, bits 0 and 8 mean that timers are in use
  virtual int32_t GetFirstTimerIndex() = 0;  // 3, 0 to 3
  /// Slot 4. Null where there is none.
  virtual I_TimerRecordSource* GetTimerRecordSource() = 0;
  virtual int32_t IsUserMapped() = 0;  // 5, non-zero: the hand-made pin map is in force

  virtual int32_t GetColorCount() = 0;  // 6
  /// Slot 7. Null where there is none.
  virtual I_SensorRecordSource* GetSensorRecordSource() = 0;
  virtual int32_t GetLvdLevelCount() = 0;  // 8

  // The placing of the firmware's pins. A port pair has the port position of line B in
  // its high half and that of line A in its low half, a pin pair the pin numbers.

  /// Slot 9. A cell of the key matrix in each entry: key number, port pair, pin pair.
  virtual void SetMatrixMap(I_CUElementList<uint32_t>* keys, I_CUElementList<uint32_t>* ports,
                            I_CUElementList<uint32_t>* pins) = 0;
  /// Slots 10 to 13: port position and pin number.
  virtual void SetFixedMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) = 0;
  virtual void SetSingleMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) = 0;
  virtual void SetInputMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) = 0;
  virtual void SetOutputMap(I_CUElementList<uint32_t>* ports, I_CUElementList<uint32_t>* pins) = 0;

 protected:
  ~I_ProjectOutputs() = default;
};

}  // namespace velora
