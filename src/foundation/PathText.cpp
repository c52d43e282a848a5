#include "foundation/PathText.h"

#include <algorithm>
#include <vector>

#include "foundation/AsciiText.h"
#include "platform/Path.h"

namespace velora {
namespace {

/// The parts of a path; together they are the path.
struct PathParts {
  std::string_view drive, dir, name, ext;
};

/// Length of the drive that the path begins with; 0 without one.
size_t DriveLength(std::string_view path) { return path.size() >= 2 && path[1] == ':' ? 2 : 0; }

PathParts SplitParts(std::string_view path) {
  PathParts parts;
  const size_t driveEnd = DriveLength(path);
  parts.drive = path.substr(0, driveEnd);
  path.remove_prefix(driveEnd);

  const size_t dirEnd = path.find_last_of("\\/") + 1;
  parts.dir = path.substr(0, dirEnd);
  path.remove_prefix(dirEnd);

  const size_t nameEnd = std::min(path.rfind('.'), path.size());
  parts.name = path.substr(0, nameEnd);
  parts.ext = path.substr(nameEnd);
  return parts;
}

/// As SplitParts, with everything up to a colon as the drive.
PathParts SplitPartsAtColon(std::string_view path) {
  PathParts parts = SplitParts(path);
  const size_t colon = path.find(':');
  if (parts.drive.empty() && colon != std::string_view::npos) {
    parts = SplitParts(path.substr(colon + 1));
    parts.drive = path.substr(0, colon + 1);
  }
  return parts;
}

std::string WithBackslashes(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

std::string HeldTo(size_t room, std::string path) {
  return path.size() < room ? std::move(path) : std::string();
}

/// What no ".." leads out of: a drive, backslashes in front, or both.
size_t RootLength(std::string_view path) {
  return std::min(path.find_first_not_of('\\', DriveLength(path)), path.size());
}

/// The rule by which a name is appended to a path.
std::string AppendName(const std::string& path, std::string_view name) {
  const bool network = name.starts_with("\\\\");
  if (!network) name.remove_prefix(std::min(name.find_first_not_of('\\'), name.size()));
  return network ? CanonicalizePath(name) : MakeAbsolute(path, name);
}

/// Takes the first component, which ends in a backslash, off the path.
std::string_view DropComponent(std::string_view path) {
  const size_t end = path.find('\\');
  return end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
}

/// True when both begin with a component and the two are equal.
bool ShareComponent(std::string_view a, std::string_view b) {
  const size_t end = a.find('\\');
  return end != std::string_view::npos && b.find('\\') == end &&
         EqualsNoCase(a.substr(0, end), b.substr(0, end));
}

}  // namespace

std::string GetModuleDir(bool withBackslash) {
  const std::string file = GetModuleFileText();
  const PathParts parts = SplitPartsAtColon(file);
  std::string directory = ToUpper(parts.drive) + ToUpper(parts.dir);
  directory.resize(directory.find_last_not_of('\\') + 1);
  if (withBackslash) directory += '\\';
  return directory;
}

std::string GetModuleBaseName() {
  const std::string file = GetModuleFile();
  return std::string(SplitParts(file).name);
}

std::string JoinPath(std::string_view base, std::initializer_list<std::string_view> names) {
  std::string path(base);
  for (const std::string_view name : names) {
    path = AppendName(path, name);
    if (path.size() >= kShortPathRoom) return {};
  }
  return HeldTo(kShortPathRoom, std::move(path));
}

bool SplitPath(std::string_view path, std::string* directory, std::string* baseName,
               std::string* extension) {
  constexpr size_t kSmallRoom = 10;
  const PathParts parts = SplitParts(path);
  if (parts.drive.size() >= kSmallRoom || parts.ext.size() >= kSmallRoom ||
      parts.dir.size() >= kShortPathRoom || parts.name.size() >= kShortPathRoom) {
    return false;
  }
  // The outputs may be where the path itself stands.
  std::string joined = CombinePath(parts.drive, parts.dir);
  std::string name(parts.name);
  std::string ext(parts.ext);
  if (joined.size() >= kShortPathRoom) return false;
  if (directory) *directory = std::move(joined);
  if (baseName) *baseName = std::move(name);
  if (extension) *extension = std::move(ext);
  return true;
}

std::string CombinePath(std::string_view first, std::string_view second) {
  std::string base = WithBackslashes(first);
  base.resize(base.find_last_not_of('\\') + 1);
  const std::string text = WithBackslashes(second);
  std::string_view rest = text;
  while (true) {
    if (rest.starts_with("\\")) {
      rest.remove_prefix(1);
    } else if (rest.starts_with(".\\")) {
      rest.remove_prefix(2);
    } else if (rest.starts_with("..\\")) {
      rest.remove_prefix(3);
      const size_t last = base.rfind('\\');
      if (last != std::string::npos) base.resize(last);
    } else {
      break;
    }
  }
  return HeldTo(kPathRoom, base.append(1, '\\').append(rest));
}

std::string MakeRelative(std::string_view directory, std::string_view path) {
  const size_t directoryRoot = directory.find('\\');
  const size_t pathRoot = path.find('\\');
  if (pathRoot == std::string_view::npos) return std::string(path);
  if (directoryRoot == pathRoot &&
      !EqualsNoCase(directory.substr(0, directoryRoot), path.substr(0, pathRoot))) {
    return std::string(path);
  }

  std::string_view from = DropComponent(directory);
  std::string_view to = DropComponent(path);
  while (ShareComponent(from, to)) {
    from = DropComponent(from);
    to = DropComponent(to);
  }
  std::string relative;
  for (auto up = std::count(from.begin(), from.end(), '\\'); up > 0; --up) relative += "..\\";
  return relative.append(to);
}

bool IsRelativePath(std::string_view path) {
  return !path.starts_with('\\') && DriveLength(path) == 0;
}

std::string MakeAbsolute(std::string_view directory, std::string_view path) {
  std::string joined;
  if (path.empty() || directory.empty()) {
    joined.append(directory).append(path);
  } else if (path.starts_with('\\') && !path.starts_with("\\\\")) {
    joined.append(directory.substr(0, DriveLength(directory))).append(path);
  } else if (!IsRelativePath(path)) {
    joined = path;
  } else {
    joined.append(directory);
    if (joined.back() != '\\') joined += '\\';
    joined.append(path);
  }
  return HeldTo(kPathRoom, CanonicalizePath(joined));
}

std::string CanonicalizePath(std::string_view path) {
  const std::string_view root = path.substr(0, RootLength(path));
  std::vector<std::string_view> components;
  std::string_view rest = path.substr(root.size());
  bool endsInSeparator = false;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find('\\'), rest.size());
    const std::string_view component = rest.substr(0, end);
    endsInSeparator = end < rest.size();
    rest.remove_prefix(endsInSeparator ? end + 1 : end);
    if (component == "..") {
      if (!components.empty()) components.pop_back();
    } else if (component != "." && !component.empty()) {
      components.push_back(component);
    }
  }

  std::string canonical(root);
  for (const std::string_view component : components) canonical.append(component).append("\\");
  if (!components.empty() && !endsInSeparator) canonical.pop_back();
  if (canonical.empty() || canonical.back() == ':') canonical += '\\';
  return canonical;
}

bool C_CUPathSplit::SetPath(std::string_view path) {
  constexpr size_t kRoom = 256;
  const PathParts parts = SplitPartsAtColon(path);
  const bool fits =
      parts.dir.size() < kRoom && parts.name.size() < kRoom && parts.ext.size() < kRoom;
  C_CUPathSplit split;
  if (fits) {
    split.path_ = path;
    split.drive_ = parts.drive.substr(0, kRoom - 1);
    split.dir_ = parts.dir;
    split.name_ = parts.name;
    split.ext_ = parts.ext;
  }
  *this = std::move(split);
  return fits;
}

}  // namespace velora
