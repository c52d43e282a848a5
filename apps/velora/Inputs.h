// The files that a command works on.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora::cli {

/// One file that was named or found below a directory that was named.
struct Input {
  std::string path;      ///< as messages and JSON show it; "-" for standard input
  std::string relative;  ///< below the argument it came from; its name if it was named itself
  Status fault;          ///< set when there is nothing to open
};

/// All inputs, in the order of the arguments; the files of a directory by path in
/// byte order. A directory is taken with `recursive` only, and gives the files
/// below it that have an extension of a readable sound format; links to other
/// directories are not followed. An argument that is not there gives an input with
/// a fault, so that the others are worked on all the same.
std::vector<Input> GatherInputs(const std::vector<std::string>& arguments, bool recursive);

/// An input as a file that can be read at any offset: standard input is copied to
/// a temporary file first, which lives as long as this.
class OpenedInput {
 public:
  static Result<OpenedInput> Open(const Input& input);
  const Path& GetPath() const { return path_; }

 private:
  Path path_;
  std::optional<TemporaryFile> spool_;
};

}  // namespace velora::cli
