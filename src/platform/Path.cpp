#include "platform/Path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <mutex>
#include <vector>

#include "platform/System.h"

namespace velora {
namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return Upper(x) == Upper(y); });
}

std::string ToUpper(std::string text) {
  std::ranges::transform(text, text.begin(), Upper);
  return text;
}

bool Exists(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) == 0;
}

/// The entry of `directory` that equals `name` but for case; empty for none.
std::string FindEntryNoCase(const std::string& directory, std::string_view name) {
  DIR* handle = opendir(directory.empty() ? "." : directory.c_str());
  if (!handle) return {};
  std::string found;
  while (const dirent* entry = readdir(handle)) {
    const std::string_view candidate = entry->d_name;
    if (EqualNoCase(candidate, name) && (found.empty() || candidate < found)) found = candidate;
  }
  closedir(handle);
  return found;
}

/// Walks a path component by component, replacing each that has no entry of its
/// exact spelling. `keepLast` leaves the last component as it stands.
std::string MatchCase(const std::string& path, bool keepLast) {
  if (!keepLast && Exists(path)) return path;
  std::string result;
  size_t at = 0;
  while (at < path.size()) {
    const size_t slash = path.find('/', at);
    const size_t end = slash == std::string::npos ? path.size() : slash;
    std::string component = path.substr(at, end - at);
    const bool last = slash == std::string::npos;
    if (!component.empty() && !(last && keepLast) && !Exists(result + component)) {
      const std::string entry = FindEntryNoCase(result, component);
      if (!entry.empty()) component = entry;
    }
    result += component;
    if (!last) result += '/';
    at = last ? path.size() : slash + 1;
  }
  return result;
}

std::mutex moduleFileMutex;
/// Native; empty until set. Made when first asked for: the application object of a module
/// sets it while the module's other globals are still being made.
std::string& ModuleFileSlot() {
  static std::string file;
  return file;
}

std::string DirectoryOf(const std::string& nativePath) {
  const size_t slash = nativePath.rfind('/');
  return slash == std::string::npos ? std::string(".") : nativePath.substr(0, slash);
}

std::string ToText(std::string nativePath) {
  std::ranges::replace(nativePath, '/', '\\');
  return ToUpper(std::move(nativePath));
}

/// A system path as native text, before any look at the file system.
std::string Translate(std::string_view text) {
  const std::string directoryText = ToText(DirectoryOf(GetModuleFile()));
  std::string result;
  if (text.size() > directoryText.size() && text[directoryText.size()] == '\\' &&
      EqualNoCase(text.substr(0, directoryText.size()), directoryText)) {
    result = DirectoryOf(GetModuleFile());
    text.remove_prefix(directoryText.size());
  } else if (EqualNoCase(text, directoryText)) {
    return DirectoryOf(GetModuleFile());
  } else if (text.size() >= 2 && text[1] == ':' &&
             std::isalpha(static_cast<unsigned char>(text[0]))) {
    text.remove_prefix(2);
  }
  std::string rest(text);
  std::ranges::replace(rest, '\\', '/');
  return result + rest;
}

}  // namespace

std::string NativeForReading(const Path& path) {
  return path.IsNative() ? path.Text() : MatchCase(Translate(path.Text()), false);
}

std::string NativeForWriting(const Path& path) {
  return path.IsNative() ? path.Text() : MatchCase(Translate(path.Text()), true);
}

void SetModuleFile(std::string_view nativePath) {
  const std::scoped_lock lock(moduleFileMutex);
  ModuleFileSlot() = nativePath;
}

std::string GetModuleFile() {
  {
    const std::scoped_lock lock(moduleFileMutex);
    if (!ModuleFileSlot().empty()) return ModuleFileSlot();
  }
  return GetProgramFile();
}

std::string GetModuleFileText() { return ToText(GetModuleFile()); }

}  // namespace velora
