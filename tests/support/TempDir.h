// A directory that lives as long as a test.
#pragma once

#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace velora::test {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

  /// Names of the entries, sorted.
  std::vector<std::string> Entries() const;

 private:
  std::filesystem::path path_;
};

void WriteBytes(const std::string& path, std::span<const std::byte> bytes);
void WriteText(const std::string& path, const std::string& text);
std::vector<std::byte> ReadBytes(const std::string& path);
std::string ReadText(const std::string& path);

}  // namespace velora::test
