// The byte string of the system.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

namespace velora {

/// A standard string with the operations that the system adds. One char is one
/// byte; letters outside ASCII have no case.
class C_CUString : public std::string {
 public:
  C_CUString() = default;
  C_CUString(const C_CUString&) = default;
  C_CUString(C_CUString&&) noexcept = default;
  C_CUString(const std::string& text) : std::string(text) {}
  C_CUString(std::string&& text) noexcept : std::string(std::move(text)) {}
  explicit C_CUString(char c) : std::string(1, c) {}
  C_CUString(const char* text) : std::string(text ? text : "") {}
  virtual ~C_CUString() = default;

  C_CUString& operator=(const C_CUString&) = default;
  C_CUString& operator=(C_CUString&&) noexcept = default;
  C_CUString& operator=(const std::string& text);
  C_CUString& operator=(const char* text);  ///< null as empty

  /// Becomes the formatted text. A result of 10,240 bytes or more is a failure:
  /// the string is then empty and the answer false.
  bool Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
  bool FormatV(const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));

  /// Becomes string resource `id` of this module. 1, or 0 and empty when there
  /// is none.
  int32_t LoadString(uint32_t id);

  /// The first or last n bytes: all for an n above the length, none below 1.
  C_CUString Left(int64_t n) const;
  C_CUString Right(int64_t n) const;

  /// `count` bytes from `start` on, or as many as there are. A start behind the
  /// end throws std::out_of_range.
  C_CUString Mid(size_t start, size_t count = npos) const;

  void MakeUpper();
  void MakeLower();

  /// Without a set: blank, tab and newline.
  void TrimLeft();
  void TrimRight();
  void TrimLeft(const char* set);
  void TrimRight(const char* set);
  void TrimLeft(char c);
  void TrimRight(char c);
};

C_CUString operator+(const C_CUString& a, const C_CUString& b);
C_CUString operator+(const C_CUString& a, const char* b);  ///< null as empty
C_CUString operator+(const C_CUString& a, char b);
C_CUString operator+(const char* a, const C_CUString& b);  ///< null as empty
C_CUString operator+(char a, const C_CUString& b);

}  // namespace velora
