// The rules of the house that a compiler does not check.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>

namespace velora {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = VELORA_SOURCE_DIR;

/// For each folder the folders whose headers it may include, besides its own and
/// include/velora. Arrows point down only.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"src/platform", {}},
    {"src/foundation", {"platform"}},
    {"src/catalogue", {"platform", "foundation"}},
    {"src/catalogue/chipfile", {"platform", "foundation"}},
    {"src/pinmap", {"platform", "foundation", "catalogue"}},
    {"src/audio/wavedata", {"platform", "foundation", "pinmap"}},
    {"src/audio/codecs", {"platform", "foundation", "pinmap", "audio/wavedata"}},
    {"src/audio/WaveFileUtil",
     {"platform", "foundation", "catalogue", "pinmap", "audio/wavedata", "audio/codecs"}},
    {"src/audio/inspect", {"platform", "foundation", "audio/WaveFileUtil"}},
    {"src/curves", {"platform", "foundation", "pinmap", "audio/wavedata"}},
    {"src/chip", {"platform", "foundation", "catalogue", "pinmap"}},
    {"src/dialogs",
     {"platform", "foundation", "catalogue", "pinmap", "chip", "curves", "audio/wavedata"}},
    {"src/service", {"platform", "foundation", "catalogue", "pinmap", "chip", "dialogs", "curves"}},
    {"siblings", {"platform", "foundation", "catalogue/chipfile"}},
    {"host",
     {"platform", "foundation", "pinmap", "audio/wavedata", "audio/codecs", "audio/WaveFileUtil"}},
    {"apps",
     {"platform", "foundation", "catalogue/chipfile", "pinmap", "audio/wavedata", "audio/codecs",
      "audio/WaveFileUtil", "audio/inspect", "curves", "chip", "dialogs", "host"}},
};

bool IsSource(const fs::path& path) {
  const std::string extension = path.extension().string();
  return extension == ".h" || extension == ".cpp";
}

std::vector<fs::path> SourcesBelow(const fs::path& folder) {
  std::vector<fs::path> files;
  if (!fs::exists(kRoot / folder)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    if (entry.is_regular_file() && IsSource(entry.path())) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> Lines(const fs::path& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// The row of the table that a file belongs to; empty for none.
std::string FolderOf(const fs::path& file) {
  const std::string relative = fs::relative(file, kRoot).generic_string();
  std::string best;
  for (const auto& row : kMayInclude) {
    if (relative.starts_with(row.first + "/") && row.first.size() > best.size()) best = row.first;
  }
  return best;
}

TEST(House, IncludesPointDown) {
  const std::regex include("^\\s*#\\s*include\\s*\"([^\"]+)/[^/\"]+\"");
  size_t seen = 0;
  for (const char* top : {"src", "siblings", "host", "apps"}) {
    for (const fs::path& file : SourcesBelow(top)) {
      const std::string folder = FolderOf(file);
      ASSERT_FALSE(folder.empty()) << file << " is in no room of the house";
      const std::string own = folder.starts_with("src/") ? folder.substr(4) : folder;
      const std::set<std::string>& allowed = kMayInclude.at(folder);
      for (const std::string& line : Lines(file)) {
        std::smatch match;
        if (!std::regex_search(line, match, include)) continue;
        ++seen;
        const std::string target = match[1];
        EXPECT_TRUE(target.starts_with(own) || allowed.contains(target))
            << file << " includes upwards: " << line;
      }
    }
  }
  EXPECT_GT(seen, 100u) << "the pattern finds includes";
}

TEST(House, InterfacesIncludeNothingOfTheSources) {
  const std::regex include("^\\s*#\\s*include\\s*\"");
  for (const fs::path& file : SourcesBelow("include")) {
    for (const std::string& line : Lines(file)) {
      EXPECT_FALSE(std::regex_search(line, include)) << file << ": " << line;
    }
  }
}

TEST(House, TheOperatingSystemIsBehindThePlatformLayer) {
  const std::regex system(
      "^\\s*#\\s*if(def|ndef)?\\b|\\b(dlopen|dlsym|getpid|getenv|stat|fopen|mkstemp|unlink)\\s*\\(|"
      "#include <(unistd|dlfcn|fcntl|sys/|windows)");
  for (const fs::path& file : SourcesBelow("src")) {
    if (FolderOf(file) == "src/platform") continue;
    for (const std::string& line : Lines(file)) {
      EXPECT_FALSE(std::regex_search(line, system)) << file << ": " << line;
    }
  }
}

// The linker keeps one of two inline constants or classes of the same name, whichever
// comes first, without a word.
TEST(House, NoNameIsDefinedInTwoHeaders) {
  const std::regex definition(
      "^(?:inline constexpr [^=({]*?\\b(k[A-Z]\\w*)\\b|(?:class|struct) (\\w+)(?: final)?(?: :.*)? "
      "?\\{)");
  const std::set<std::string> ownNamespace = {"src/audio/inspect/Layouts.h"};
  std::map<std::string, std::string> homes;
  for (const char* top : {"include", "src", "host"}) {
    for (const fs::path& file : SourcesBelow(top)) {
      const std::string home = fs::relative(file, kRoot).generic_string();
      if (file.extension() != ".h" || ownNamespace.contains(home)) continue;
      for (const std::string& line : Lines(file)) {
        std::smatch match;
        if (!std::regex_search(line, match, definition)) continue;
        const std::string name = match[1].matched ? match[1] : match[2];
        const auto [known, fresh] = homes.try_emplace(name, home);
        EXPECT_TRUE(fresh || known->second == home)
            << name << " is defined in " << known->second << " and in " << home;
      }
    }
  }
  EXPECT_GT(homes.size(), 300u) << "the pattern finds definitions";
}

TEST(House, EveryHeaderStandsAlone) {
  for (const char* top : {"include", "src", "host", "apps"}) {
    for (const fs::path& file : SourcesBelow(top)) {
      if (file.extension() != ".h") continue;
      const std::vector<std::string> lines = Lines(file);
      EXPECT_NE(std::ranges::find(lines, "#pragma once"), lines.end()) << file;
      ASSERT_FALSE(lines.empty()) << file;
      EXPECT_TRUE(lines.front().starts_with("//")) << file << " does not say what it is";
    }
  }
}

}  // namespace
}  // namespace velora
