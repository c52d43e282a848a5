// Paths, and how they reach the file system.
//
// Text paths inside the system use backslashes, may begin with a drive and are
// blind to case; paths from the command line or the operating system are native
// and mean what they say. A Path remembers which of the two it holds, and is
// turned into a native path only at the moment a file is opened:
//
//   - each backslash becomes a slash, a drive prefix ("C:") is dropped;
//   - a component that has no entry of its exact spelling takes the first entry
//     of its directory, in byte order, that differs only in the case of ASCII
//     letters; the last component of a path to be written is taken as it stands;
//   - a path that begins with the module's directory text (GetModuleDirText)
//     starts in the module's real directory.
#pragma once

#include <string>
#include <string_view>

namespace velora {

class Path {
 public:
  Path() = default;

  /// A path of the system's own: backslashes, perhaps a drive.
  static Path System(std::string_view text) { return Path(text, false); }

  /// A path as the operating system or a person gave it.
  static Path Native(std::string_view text) { return Path(text, true); }

  /// As it was given; for messages.
  const std::string& Text() const { return text_; }
  bool IsNative() const { return native_; }
  bool Empty() const { return text_.empty(); }

 private:
  Path(std::string_view text, bool native) : text_(text), native_(native) {}

  std::string text_;
  bool native_ = false;
};

/// The native path under which an existing file or directory is found. Where
/// nothing matches, the translated path as it stands.
std::string NativeForReading(const Path& path);

/// The native path to create or replace: directories as for reading, the last
/// component as it stands.
std::string NativeForWriting(const Path& path);

/// Remembers the native path of this module's file. Called once at start-up; a
/// program that links the code statically, and a test, set their own.
void SetModuleFile(std::string_view nativePath);

/// The native path set last, or the running program's.
std::string GetModuleFile();

/// The module's file as system text: upper case, backslashes.
std::string GetModuleFileText();

}  // namespace velora
