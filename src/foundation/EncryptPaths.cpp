#include "foundation/EncryptPaths.h"

#include <algorithm>

namespace velora {
namespace {

constexpr std::string_view kSystemSeparators = "\\/:";

std::string_view SeparatorsOf(const Path& path) {
  return path.IsNative() ? "/" : kSystemSeparators;
}

Path OfSameKind(const Path& path, std::string_view text) {
  return path.IsNative() ? Path::Native(text) : Path::System(text);
}

size_t NameStart(const Path& path) {
  return std::string_view(path.Text()).find_last_of(SeparatorsOf(path)) + 1;
}

}  // namespace

Path FolderOf(const Path& path) {
  return OfSameKind(path, std::string_view(path.Text()).substr(0, NameStart(path)));
}

std::string_view NameOf(const Path& path) {
  return std::string_view(path.Text()).substr(NameStart(path));
}

std::string_view ExtensionOf(const Path& path) {
  const std::string_view name = NameOf(path);
  return name.substr(std::min(name.rfind('.'), name.size()));
}

Path WithExtension(const Path& path, std::string_view extension) {
  const size_t kept = path.Text().size() - ExtensionOf(path).size();
  return OfSameKind(path, path.Text().substr(0, kept).append(extension));
}

Path InFolder(const Path& folder, std::string_view name) {
  std::string text = folder.Text();
  const bool separated =
      text.empty() || SeparatorsOf(folder).find(text.back()) != std::string::npos;
  if (!separated) text += folder.IsNative() ? '/' : '\\';
  return OfSameKind(folder, text.append(name));
}

std::string_view SafeName(std::string_view claimed) {
  const std::string_view name = claimed.substr(claimed.find_last_of(kSystemSeparators) + 1);
  const bool control = std::any_of(name.begin(), name.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < ' '; });
  return control || name == "." || name == ".." ? std::string_view() : name;
}

}  // namespace velora
