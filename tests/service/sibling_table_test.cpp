// The places of the operations of the generator and of the expander editor, which siblings
// implement and this module calls.
#include <gtest/gtest.h>
#include <velora/I_PortFanoutUtil.h>
#include <velora/I_VLRCodeGen.h>

#include "support/RawTable.h"

namespace velora::test {
namespace {

/// Writes down every call.
class Generator final : public I_VLRCodeGen {
 public:
  std::string last;

  void Release() override { last = "Release"; }
  int32_t SetPin(int32_t pin, int32_t type, const char* port, int32_t index, int32_t stop,
                 int32_t keep, uint32_t pins) override {
    return Told("SetPin", {pin, type, port[0], index, stop, keep, pins});
  }
  int32_t SetPwm(int32_t most, intptr_t value, int32_t frequency, int32_t flag) override {
    return Told("SetPwm", {most, value, frequency, flag});
  }
  int32_t SetPwmTimer(const char* name) override { return Told("SetPwmTimer", {name[0]}); }
  int32_t GetUsedRam() override { return Told("GetUsedRam", {}); }
  int32_t Generate(intptr_t value, int32_t mode) override {
    return Told("Generate", {value, mode});
  }
  int32_t GetPinLoad() override { return Told("GetPinLoad", {}); }
  void SetOutputWord(const uint32_t* word) override { Told("SetOutputWord", {*word}); }
  void SetOptionA(int32_t value) override { Told("SetOptionA", {value}); }
  void SetOptionB(int32_t value) override { Told("SetOptionB", {value}); }
  void SetMultiPinValue(int32_t pin, uint32_t low, uint32_t high) override {
    Told("SetMultiPinValue", {pin, low, high});
  }
  void SetClockGroup(int32_t index, int32_t source) override {
    Told("SetClockGroup", {index, source});
  }
  void SetFirstClock(int32_t source) override { Told("SetFirstClock", {source}); }
  void SetMemoryInfo(uint16_t load, int32_t value) override {
    Told("SetMemoryInfo", {load, value});
  }
  void SetExpander(const char* model, const int32_t* values, int32_t count) override {
    Told("SetExpander", {model[0], values[count - 1], count});
  }
  void SetMode(int32_t mode) override { Told("SetMode", {mode}); }

 private:
  int32_t Told(const char* name, std::initializer_list<int64_t> arguments) {
    last = name;
    for (const int64_t argument : arguments) last.append(1, ' ').append(std::to_string(argument));
    return 1;
  }
};

TEST(GeneratorTable, EachOperationAtItsSlot) {
  Generator generator;
  const RawTable table(static_cast<I_VLRCodeGen*>(&generator));
  const char* const text = "A";
  const uint32_t word = 9;
  const int32_t values[] = {1, 2, 7};
  const auto expect = [&generator](const char* told) { EXPECT_EQ(generator.last, told); };
  table.Call<void>(0), expect("Release");
  table.Call<int32_t>(1, 1, -1, text, 3, 4, 5, uint32_t{6}), expect("SetPin 1 -1 65 3 4 5 6");
  table.Call<int32_t>(2, 1, intptr_t{1} << 40, 3, 4), expect("SetPwm 1 1099511627776 3 4");
  table.Call<int32_t>(3, text), expect("SetPwmTimer 65");
  table.Call<int32_t>(4), expect("GetUsedRam");
  table.Call<int32_t>(5, intptr_t{-5}, 2), expect("Generate -5 2");
  table.Call<int32_t>(6), expect("GetPinLoad");
  table.Call<void>(7, &word), expect("SetOutputWord 9");
  table.Call<void>(8, 1), expect("SetOptionA 1");
  table.Call<void>(9, 2), expect("SetOptionB 2");
  table.Call<void>(10, 1, uint32_t{2}, uint32_t{3}), expect("SetMultiPinValue 1 2 3");
  table.Call<void>(11, 1, 2), expect("SetClockGroup 1 2");
  table.Call<void>(12, 3), expect("SetFirstClock 3");
  table.Call<void>(13, uint16_t{65535}, -1), expect("SetMemoryInfo 65535 -1");
  table.Call<void>(14, text, &values[0], 3), expect("SetExpander 65 7 3");
  table.Call<void>(15, 2), expect("SetMode 2");
}

class Fanout final : public I_PortFanoutUtil {
 public:
  std::string last;

  void SetPinMap(I_VeloraPinMapInfoMgr*) override { last = "SetPinMap"; }
  int32_t Run(I_WindowHost*, const char* part) override {
    last = "Run ";
    last += part;
    return 1;
  }
  void GetPinMap(I_VeloraPinMapInfoMgr*) override { last = "GetPinMap"; }
  void Release() override { last = "Release"; }
};

TEST(FanoutTable, EachOperationAtItsSlot) {
  Fanout fanout;
  const RawTable table(static_cast<I_PortFanoutUtil*>(&fanout));
  I_VeloraPinMapInfoMgr* const noMap = nullptr;
  I_WindowHost* const noWindows = nullptr;
  const char* const part = "K";
  table.Call<void>(0, noMap);
  EXPECT_EQ(fanout.last, "SetPinMap");
  EXPECT_EQ(table.Call<int32_t>(1, noWindows, part), 1);
  EXPECT_EQ(fanout.last, "Run K");
  table.Call<void>(2, noMap);
  EXPECT_EQ(fanout.last, "GetPinMap");
  table.Call<void>(3);
  EXPECT_EQ(fanout.last, "Release");
}

}  // namespace
}  // namespace velora::test
