#include "support/TempDir.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace velora::test {

TempDir::TempDir() {
  std::string name = (std::filesystem::temp_directory_path() / "velora-test-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
  path_ = name;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TempDir::Entries() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void WriteBytes(const std::string& path, std::span<const std::byte> bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  out.flush();
  if (!out) throw std::runtime_error("cannot write " + path);
}

void WriteText(const std::string& path, const std::string& text) {
  WriteBytes(path, std::as_bytes(std::span(text)));
}

std::vector<std::byte> ReadBytes(const std::string& path) {
  const std::string text = ReadText(path);
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace velora::test
