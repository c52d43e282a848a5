#include "foundation/CUString.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "foundation/AsciiText.h"
#include "foundation/StringResources.h"

namespace velora {

C_CUString& C_CUString::operator=(const std::string& text) {
  assign(text);
  return *this;
}

C_CUString& C_CUString::operator=(const char* text) {
  assign(text ? text : "");
  return *this;
}

bool C_CUString::Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const bool done = FormatV(format, arguments);
  va_end(arguments);
  return done;
}

bool C_CUString::FormatV(const char* format, std::va_list arguments) {
  // Apart from the string, since an argument may point into it.
  thread_local std::array<char, 10240> buffer;
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  if (length < 0 || static_cast<size_t>(length) >= buffer.size()) {
    clear();
    return false;
  }
  assign(buffer.data(), static_cast<size_t>(length));
  return true;
}

int32_t C_CUString::LoadString(uint32_t id) {
  const char* const text = FindStringResource(id);
  *this = text;
  return text ? 1 : 0;
}

C_CUString C_CUString::Left(int64_t n) const {
  return Mid(0, static_cast<size_t>(std::max<int64_t>(n, 0)));
}

C_CUString C_CUString::Right(int64_t n) const {
  const size_t count = std::min(static_cast<size_t>(std::max<int64_t>(n, 0)), size());
  return Mid(size() - count, count);
}

C_CUString C_CUString::Mid(size_t start, size_t count) const { return substr(start, count); }

void C_CUString::MakeUpper() { *this = ToUpper(*this); }
void C_CUString::MakeLower() { *this = ToLower(*this); }

void C_CUString::TrimLeft() { TrimLeft(kBlanks.data()); }
void C_CUString::TrimRight() { TrimRight(kBlanks.data()); }
void C_CUString::TrimLeft(char c) { erase(0, find_first_not_of(c)); }
void C_CUString::TrimRight(char c) { erase(find_last_not_of(c) + 1); }
void C_CUString::TrimLeft(const char* set) { erase(0, find_first_not_of(set)); }
void C_CUString::TrimRight(const char* set) { erase(find_last_not_of(set) + 1); }

C_CUString operator+(const C_CUString& a, const C_CUString& b) {
  C_CUString sum = a;
  sum.append(b);
  return sum;
}

C_CUString operator+(const C_CUString& a, const char* b) { return a + C_CUString(b); }
C_CUString operator+(const C_CUString& a, char b) { return a + C_CUString(b); }
C_CUString operator+(const char* a, const C_CUString& b) { return C_CUString(a) + b; }
C_CUString operator+(char a, const C_CUString& b) { return C_CUString(a) + b; }

}  // namespace velora
