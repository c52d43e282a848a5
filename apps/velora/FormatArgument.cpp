#include "FormatArgument.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/WaveFileUtil/WavFileFormat.h"

namespace velora::cli {
namespace {

constexpr std::string_view kIdPrefix = "id:";

bool EqualText(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

std::string TableExtension(uint32_t id) {
  std::string extension;
  (void)GetExtensionById(id, extension);
  return extension;
}

Result<FormatChoice> Writable(uint32_t id, std::string extension) {
  if (!CanWrite(id)) {
    return Status::Error("the format " + FormatName(id) + " (id:" + std::to_string(id) +
                         ") cannot be written");
  }
  return FormatChoice{id, std::move(extension)};
}

Result<FormatChoice> ParseId(std::string_view digits) {
  uint32_t id = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
  if (fault != std::errc() || end != digits.data() + digits.size() || GetKindById(id) == 0) {
    return Status::Error("there is no format id:" + std::string(digits));
  }
  return Writable(id, TableExtension(id));
}

}  // namespace

std::string_view ExtensionOf(std::string_view path) {
  const size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot);
}

std::string FormatName(uint32_t id) {
  std::string name;
  return GetFormatName(id, name) ? name : "format " + std::to_string(id);
}

Result<FormatChoice> ParseFormat(const std::string& text) {
  if (text.starts_with(kIdPrefix)) return ParseId(std::string_view(text).substr(kIdPrefix.size()));
  if (const uint32_t id = GetFormatIdByExtension("." + text)) return Writable(id, "." + text);
  std::vector<uint32_t> named;
  bool known = false;
  for (const NameRecord& row : GetNameTable()) {
    if (!EqualText(row.name, text)) continue;
    known = true;
    if (CanWrite(row.id)) named.push_back(row.id);
  }
  if (named.size() == 1) return FormatChoice{named.front(), TableExtension(named.front())};
  if (!known) return Status::Error("there is no format '" + text + "' (see 'velora formats')");
  if (named.empty()) return Status::Error("the format " + text + " cannot be written");
  std::string message = "'" + text + "' may be";
  for (const uint32_t id : named) {
    message += (id == named.front() ? " " : ", ") + TableExtension(id).substr(1) +
               " (id:" + std::to_string(id) + ")";
  }
  return Status::Error(message);
}

Result<FormatChoice> FormatOfName(const std::string& path) {
  const std::string extension(ExtensionOf(path));
  if (extension.empty()) {
    return Status::Error("the name has no extension that tells its format; --to does");
  }
  const uint32_t id = GetFormatIdByExtension(extension);
  if (id == 0) {
    return Status::Error("there is no format with the extension '" + extension +
                         "'; --to names one");
  }
  return Writable(id, extension);
}

std::string FormatWords() {
  std::string words;
  for (const ExtensionRecord& row : GetExtensionTable()) {
    if (GetFormatIdByExtension(row.ext) != row.id || !CanWrite(row.id)) continue;
    words += (words.empty() ? "" : " ") + std::string(row.ext).substr(1);
  }
  return words;
}

bool IsReadableSoundName(std::string_view name) {
  const uint32_t id = GetFormatIdByExtension(ExtensionOf(name));
  return id != 0 && IsAudioId(id) && CanRead(id);
}

}  // namespace velora::cli
