#include "pinmap/FilledPinMap.h"

namespace velora::test {

namespace {

void FillEvents(I_VeloraPinMapInfoMgr& manager) {
  manager.SetEnableColorEvent(1);
  manager.SetEventColorCount(5);
  std::vector<int32_t> all(32);
  for (int32_t i = 0; i < 32; ++i) all[static_cast<size_t>(i)] = 31 - i;
  const int32_t some[] = {4, 0, 9};
  for (int32_t e = 0; e < 5; ++e) {
    manager.SetEventType(e, e + 1);
    manager.SetEventBindedPins(e, some, e % 4);
  }
  manager.SetEventColor(0, 0x123456);
  manager.SetEventCurveSet(1, all.data(), 32);
  manager.SetEventCurveMap(2, 17);
  manager.SetEventSpeed(3, 1.5f);
  manager.SetEventLevel(4, 200);
}

void FillExpanders(I_VeloraPinMapInfoMgr& manager) {
  manager.SetIOExpanderCount(2);
  manager.SetIOExpanderName(0, "IOX8");
  manager.SetIOExpanderName(1, "IOX24");
  for (int32_t x = 0; x < 2; ++x) {
    for (int32_t g = 0; g < 3; ++g) {
      for (int32_t k = 0; k < 8; ++k) {
        manager.SetIOExpanderClkSource(x, g, k, 1000 + x * 100 + g * 10 + k);
        manager.SetIOExpanderCurrentType(x, g, k, 2000 + x * 100 + g * 10 + k);
      }
    }
  }
  manager.SetUserCtrlIOExpEnable(1);
  manager.SetIoExpanderSelectPin(0, 8, 3);
  manager.SetIoExpanderSelectPin(1, 9, 7);
}

void FillColorLed(I_VeloraPinMapInfoMgr& manager) {
  manager.SetWavLenColorLEDMixEn(1);
  manager.SetLEDWaveLength(620, 530, 460);
  manager.SetLEDMaxLumen(300, 400, 500);
  manager.SetLEDMixingScale(0.75);
  manager.SetColorLEDParamSource(2);
  manager.SetColorLEDx(0.5, 0.25, 0.125);
  manager.SetColorLEDy(0.375, 0.625, 0.0625);
  manager.SetColorLEDBigY(100, 110, 120);
  manager.SetColorLEDComp(-1.5, 2.5, 3.5);
}

}  // namespace

std::vector<tagVLRCurveCtrlPoint> MakePoints(size_t count, uint32_t seed) {
  std::vector<tagVLRCurveCtrlPoint> points;
  for (uint32_t p = 0; p < count; ++p) {
    points.push_back({seed * 1000 + p * 7, static_cast<uint8_t>(seed + p * 3)});
  }
  return points;
}

PinValues FilledPin(uint32_t index) {
  const auto i = static_cast<uint8_t>(index);
  PinValues pin{};
  pin.port = static_cast<uint16_t>(i % 10);
  pin.port_pin = static_cast<uint8_t>(i % 8);
  pin.pwm_type = static_cast<uint8_t>(i % 4);
  pin.stop_value = static_cast<uint8_t>(i * 5);
  pin.keep_level = i % 2;
  pin.multi_pin_value = (uint64_t{1} << (8 + i)) | (uint64_t{1} << 63) | i;
  pin.record.Convert = 1;
  pin.record.MapEventIndex = static_cast<uint8_t>(253 - i);
  pin.record.XResolution = static_cast<uint16_t>(60 + i * 300);
  pin.record.YResolution = static_cast<uint8_t>(32 + i);
  return pin;
}

void FillSerialLed(I_VeloraSerialLEDMgr& manager) {
  manager.SetSampleFreq(60);
  manager.SetColorType(3);
  manager.SetScanType(2);
  manager.SetEnable(1);
  manager.SetCount(300);
  manager.SetWireMode(2);
  for (uint32_t mode = 0; mode < 4; ++mode) {
    manager.SetPinUse(static_cast<uint8_t>(10 + mode), mode);
    manager.SetExtendPinInfo(mode, mode % 2 ? "BP0.1" : "IP0.3");
  }
  manager.SetHighLevel0Time(0.25);
  manager.SetHighLevel1Time(0.5);
  manager.SetLowLevel0Time(0.75);
  manager.SetLowLevel1Time(1.25);
  manager.SetHighLevel0Tick(7);
  manager.SetHighLevel1Tick(13);
  manager.SetLowLevel0Tick(19);
  manager.SetLowLevel1Tick(14);
  manager.SetBrightnessLevel(15);
  manager.SetClockRateMode(2);
  manager.SetOrderBit(0);
  manager.SetIsSupportConvert(0);
  manager.SetSPIClock(8);
  manager.SetOneWireDeviceName("WS1");
  manager.SetTwoWireDeviceName("APA2");
  manager.SetVixenImportInterval(50);
  const auto points = MakePoints(4, 6);
  manager.SetAdjustCurve(points.data(), 4);
}

void FillMotor(I_VeloraMotorModeMgr& manager) {
  const uint32_t mode = 2;
  const int32_t gpioCount = 3;
  const int32_t adcSectorCount = 5;
  manager.SetEnableMotorMode(1);
  manager.SetMotorMode(&mode);
  manager.SetGPIOCount(&gpioCount);
  manager.SetADCSectorCount(&adcSectorCount);
  const GPIOSectorInfo gpio[] = {{0, 11, 0, 90}, {1, 12, 91, 180}, {2, 13, 181, 360}};
  for (const GPIOSectorInfo& sector : gpio) manager.AddGPIOSector(&sector);
  const ADCSectorInfo adc[] = {{0, 0, 2000, 0, 180}, {1, 2001, 4095, 181, 360}};
  for (const ADCSectorInfo& sector : adc) manager.AddADCSector(&sector);
  for (const int32_t pin : {3, 14, 25}) manager.AddServoPin(&pin);
}

void FillPinMap(I_VeloraPinMapInfoMgr& manager, size_t points) {
  for (uint32_t i = 0; i < kOutPinCount; ++i) {
    PinValues pin = FilledPin(i);
    const auto curve = MakePoints(points, i);
    pin.record.AdjustCurveCtrlPointNum = static_cast<uint32_t>(curve.size());
    pin.record.AdjustCurveCtrlPoints = curve.data();
    manager.SetPin(i, pin.port, pin.port_pin, pin.pwm_type, pin.stop_value, pin.keep_level,
                   pin.multi_pin_value, &pin.record);
  }
  manager.SetFirmwarePWMTimer("TMG0");
  manager.SetFirmwarePWMFrequency(120);
  manager.SetUsedRAMSize(0x8001);
  manager.SetUsedStackSize(77);
  manager.SetConvertMethod(kConvertBam);
  FillEvents(manager);
  manager.SetDynamicCurveEnable(1);
  manager.SetDynamicCurveColorCount(2);
  manager.SetDynamicCurveColor(0, 0xFF0000);
  manager.SetDynamicCurveColor(1, -5);
  const auto table = MakePoints(points, 40);
  manager.SetDynamicCurveTable(table.data(), static_cast<int32_t>(points));
  manager.SetDynamicCurveActiveHigh(1);
  manager.SetDynamicCurveGroupNum(4);
  FillExpanders(manager);
  manager.SetHwPwmSourceClkCount(3);
  for (int32_t i = 0; i < 3; ++i) manager.SetHwPwmSourceClk(i, 5 + i);
  FillColorLed(manager);
  FillSerialLed(*manager.GetSerialLEDMgr());
  FillMotor(*manager.GetMotorModeMgr());
  manager.SetRuntimeEnvelopEnabled(1);
  manager.SetRuntimeEnvelopSamplePerGroup(128);
  const auto gamma = MakePoints(points, 50);
  manager.SetRuntimeEnvelopGammaCP(gamma.data(), static_cast<int32_t>(points));
  manager.SetRuntimeEnvelopActiveHigh(0);
}

}  // namespace velora::test
