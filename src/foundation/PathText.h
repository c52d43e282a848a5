// Paths as text: taken apart, joined, made relative.
//
// Everything here works on the text alone and behaves the same on every system.
// Separators are backslashes; a path may begin with a drive ("C:"). Letters
// compare without regard to case. No result is ever cut: where a path grows
// longer than its class can hold, the operation fails as it says.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace velora {

/// Room of the texts of this header, and of JoinPath and SplitPath, in bytes
/// with a terminator.
inline constexpr size_t kPathRoom = 2080;
inline constexpr size_t kShortPathRoom = 260;

/// Directory of this module's file in upper case, with one backslash at its end
/// or with none. All files that belong to the module are found through it.
std::string GetModuleDir(bool withBackslash);

/// Name of this module's file without directory and extension, spelt as on disk.
std::string GetModuleBaseName();

/// Appends each name to the base with one backslash between; "." and ".." are
/// resolved. A name that is a path of its own with a drive replaces what came
/// before. Empty when the result passes 259 bytes.
std::string JoinPath(std::string_view base, std::initializer_list<std::string_view> names);

/// Splits into directory (drive and directory as CombinePath joins them, ending
/// in a backslash), base name, and extension with its dot. False, and nothing is
/// written, when a part is too long: 259 bytes, drive and extension 9. Any
/// output may be null.
bool SplitPath(std::string_view path, std::string* directory, std::string* baseName,
               std::string* extension);

/// `first` and `second` with one backslash between. Slashes become backslashes.
/// Each "..\" that `second` begins with takes the last component off `first`, if
/// there is one; ".\" and "\" in front of `second` go. Empty when the result
/// passes 2,079 bytes.
std::string CombinePath(std::string_view first, std::string_view second);

/// What leads from `directory`, which ends in a backslash, to `path`; `path`
/// itself when they lie on different drives or it has no backslash.
std::string MakeRelative(std::string_view directory, std::string_view path);

/// True for a path that begins neither with a backslash nor with a drive.
bool IsRelativePath(std::string_view path);

/// `path` as seen from `directory`: an absolute path stays as it is, any other
/// is appended and its "." and ".." resolved. The directory for an empty path.
/// Empty when the result passes 2,079 bytes.
std::string MakeAbsolute(std::string_view directory, std::string_view path);

/// Resolves the components "." and ".."; the root is its own parent.
std::string CanonicalizePath(std::string_view path);

/// A path taken apart. `Dir` ends in a separator, `Ext` begins with its dot.
class C_CUPathSplit {
 public:
  C_CUPathSplit() = default;
  explicit C_CUPathSplit(std::string_view path) { SetPath(path); }

  /// Takes the path apart; an empty one clears all. Anything in front of a colon
  /// counts as the drive, cut to 255 bytes. False, and all is empty, when
  /// another part passes 255 bytes.
  bool SetPath(std::string_view path);

  const std::string& Path() const { return path_; }
  const std::string& Drive() const { return drive_; }
  const std::string& Dir() const { return dir_; }
  const std::string& Name() const { return name_; }
  const std::string& Ext() const { return ext_; }

 private:
  std::string path_;
  std::string drive_;
  std::string dir_;
  std::string name_;
  std::string ext_;
};

}  // namespace velora
