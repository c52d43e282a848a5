// The temporary files that a dying process removes; for platform alone.
#pragma once

#include <string>

namespace velora {

/// Enters a native path into, or takes it out of, the table that a second
/// interrupt empties. A full table or a very long path is silently not entered.
void RememberTemporary(const std::string& path);
void ForgetTemporary(const std::string& path);

/// Unlinks every file in the table; safe in a signal handler.
void RemoveRememberedTemporaries();

class RegisteredName {
 public:
  explicit RegisteredName(const std::string& path) : path_(path) { RememberTemporary(path_); }
  RegisteredName(const RegisteredName&) = delete;
  RegisteredName& operator=(const RegisteredName&) = delete;
  ~RegisteredName() { ForgetTemporary(path_); }

 private:
  const std::string& path_;
};

}  // namespace velora
