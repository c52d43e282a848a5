// How a step that can fail says so, and why.
//
// A Status is either good or carries one sentence that tells a person what is
// wrong. The sentence is written where the fault is found, names the thing
// (chunk, offset, field), what was expected and what was there, and has neither
// a full stop nor the path: whoever knows the path puts it in front.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace velora {

class [[nodiscard]] Status {
 public:
  /// The good status.
  Status() = default;

  static Status Error(std::string message) {
    Status status;
    status.message_ = std::move(message);
    return status;
  }

  bool Ok() const { return !message_; }
  explicit operator bool() const { return Ok(); }

  /// The sentence; empty for the good status.
  const std::string& Message() const {
    static const std::string kNone;
    return message_ ? *message_ : kNone;
  }

 private:
  std::optional<std::string> message_;
};

/// A value, or the reason why there is none.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}
  Result(Status error) : status_(std::move(error)) {}

  bool Ok() const { return value_.has_value(); }
  explicit operator bool() const { return Ok(); }
  const Status& GetStatus() const { return status_; }
  const std::string& Message() const { return status_.Message(); }

  /// Only with Ok().
  T& Value() { return *value_; }
  const T& Value() const { return *value_; }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

 private:
  std::optional<T> value_;
  Status status_;
};

}  // namespace velora
