// What the tests of the curves share.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "curves/VLRUnitCtrlCurve.h"
#include "foundation/MessageBox.h"

namespace velora::test {

/// What an entry holds that no generator has written.
inline constexpr uint16_t kUnwritten = 0xABCD;

/// The levels of the curve. Fails when something outside the array was written.
inline std::vector<uint16_t> LevelsOf(C_VLRUnitCtrlCurve& curve) {
  constexpr size_t kGuard = 8;
  const size_t count = curve.GetSampleCount();
  std::vector<uint16_t> memory(count + 2 * kGuard, kUnwritten);
  curve.GenerateSamples(memory.data() + kGuard);
  for (size_t i = 0; i < kGuard; ++i) {
    EXPECT_EQ(memory[i], kUnwritten) << "written in front of the array";
    EXPECT_EQ(memory[kGuard + count + i], kUnwritten) << "written behind the array";
  }
  return {memory.begin() + kGuard, memory.begin() + kGuard + static_cast<int64_t>(count)};
}

inline std::vector<uint16_t> Unwritten(size_t count) {
  return std::vector<uint16_t>(count, kUnwritten);
}

inline std::vector<uint16_t> Inverse(std::vector<uint16_t> levels) {
  for (uint16_t& level : levels) level = static_cast<uint16_t>(255 - level);
  return levels;
}

/// Numbers that look random and are the same everywhere.
class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed) {}

  /// 0 to limit - 1.
  uint32_t Below(uint32_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<uint32_t>((state_ >> 33) % limit);
  }

 private:
  uint64_t state_;
};

/// Catches the boxes that are shown while it lives.
class BoxCatcher final : public I_WindowHost {
 public:
  BoxCatcher() : former_(GetBoxOwner()) { SetBoxOwner(this); }
  ~BoxCatcher() { SetBoxOwner(former_); }

  int32_t ShowBox(const char* text, const char* caption, uint32_t style) override {
    texts.push_back(text);
    lastCaption = caption;
    lastStyle = style;
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::vector<std::string> texts;
  std::string lastCaption;
  uint32_t lastStyle = 0;

 private:
  I_WindowHost* former_;
};

}  // namespace velora::test
