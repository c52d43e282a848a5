// Reporting progress from inside an operation.
#pragma once

#include <cstdint>

#include <velora/I_ProgressCallback.h>

namespace velora {

/// Holds the callback of an operation, or none. Borrows it.
class C_ProgressCallbackAgent {
 public:
  explicit C_ProgressCallbackAgent(I_ProgressCallback* callback) : callback_(callback) {}

  bool IsActive() const { return callback_ != nullptr; }
  void Begin() {
    if (callback_) callback_->Begin();
  }
  void Report(int32_t percent) {
    if (callback_) callback_->Report(percent);
  }
  void End() {
    if (callback_) callback_->End();
  }

 private:
  I_ProgressCallback* callback_;
};

/// Counts the equal steps of an operation: begins with it, reports whenever
/// another whole percent is reached, and 100 and the end when it dies.
class ProgressMeter {
 public:
  /// `steps` in all; 0 counts as 1.
  ProgressMeter(I_ProgressCallback* callback, uint64_t steps)
      : agent_(callback), share_(100.0 / static_cast<double>(steps ? steps : 1)) {
    agent_.Begin();
  }
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;
  ~ProgressMeter() {
    agent_.Report(100);
    agent_.End();
  }

  /// The share is added step by step, never multiplied: the sums decide at which
  /// step a percent is reached.
  void Advance(uint64_t steps = 1) {
    if (!agent_.IsActive()) return;
    for (; steps >= kStride; steps -= kStride) {
      // Most strides reach no percent; the others are walked again.
      double done = done_;
      for (unsigned i = 0; i < kStride; ++i) done += share_;
      if (done < next_) {
        done_ = done;
      } else {
        for (unsigned i = 0; i < kStride; ++i) Step();
      }
    }
    for (; steps; --steps) Step();
  }

 private:
  static constexpr unsigned kStride = 16;

  void Step() {
    done_ += share_;
    if (done_ < next_) return;
    const auto percent = static_cast<int32_t>(done_);
    next_ = percent + 1.0;
    agent_.Report(percent);
  }

  C_ProgressCallbackAgent agent_;
  double share_;
  double done_ = 0;
  double next_ = 1;
};

}  // namespace velora
