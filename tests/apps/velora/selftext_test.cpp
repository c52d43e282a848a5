// What the program prints about itself: help, manual pages, completions, and the
// pages in docs/commands that must agree with them.
#include <algorithm>
#include <filesystem>
#include <set>

#include "ProgramTest.h"

namespace velora::test {
namespace {

/// The names in the program's own help.
std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const std::string& line : Lines(RunVelora({"help"}).out)) {
    if (line.starts_with("  ") && line[2] != ' ')
      names.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

/// The long options in a command's help.
std::vector<std::string> OptionNames(const std::string& command) {
  std::vector<std::string> names;
  for (const std::string& line : Lines(RunVelora({"help", command}).out)) {
    const size_t dashes = line.find("--");
    if (line.starts_with("  ") && (dashes == 6) && line.size() > 8) {
      names.push_back(line.substr(6, line.find(' ', 6) - 6));
    }
  }
  return names;
}

bool HasProgram(const std::string& name) {
  return RunProgram({"sh", "-c", "command -v " + name}).status == 0;
}

/// The section of a page from its heading up to the next one.
std::string Section(const std::string& page, const std::string& heading) {
  const size_t start = page.find(heading + "\n");
  if (start == std::string::npos) return {};
  const size_t end = page.find("\n## ", start + heading.size());
  return page.substr(start, end == std::string::npos ? end : end + 1 - start);
}

std::string DocsPage(const std::string& command) {
  return ReadText(std::string(VELORA_SOURCE_DIR) + "/docs/commands/" + command + ".md");
}

TEST(SelfText, EveryCommandHasHelpWithExamplesAndCommonOptions) {
  const auto names = CommandNames();
  ASSERT_GE(names.size(), 9u);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const std::string help = RunVelora({"help", name}).out;
    for (const char* part : {"usage: velora ", "--help", "--quiet", "Exit status:", "Examples:"}) {
      EXPECT_NE(help.find(part), std::string::npos) << part;
    }
    for (const std::string& line : Lines(help)) EXPECT_LE(line.size(), 80u) << line;
  }
}

TEST(SelfText, DocsHaveTheOptionsThatTheTablePrints) {
  for (const std::string& name : CommandNames()) {
    SCOPED_TRACE(name);
    const std::string printed = RunVelora({"help", "--markdown", name}).out;
    std::string section = Section(DocsPage(name), "## Options");
    while (section.ends_with("\n\n")) section.pop_back();
    EXPECT_EQ(section, printed) << "docs/commands/" << name << ".md is out of date";
  }
}

TEST(SelfText, NoPageIsLeftOfACommandThatIsGone) {
  const auto names = CommandNames();
  const std::filesystem::path pages = std::string(VELORA_SOURCE_DIR) + "/docs/commands";
  for (const auto& page : std::filesystem::directory_iterator(pages)) {
    EXPECT_NE(std::ranges::find(names, page.path().stem().string()), names.end()) << page.path();
  }
}

TEST(SelfText, ManualPagesNameEveryOptionAndAreGoodRoff) {
  const bool man = HasProgram("man") && HasProgram("groff");
  const TempDir dir;
  for (const std::string& name : CommandNames()) {
    SCOPED_TRACE(name);
    const std::string page = RunVelora({"man", name}).out;
    EXPECT_TRUE(page.starts_with(".TH VELORA\\-")) << page.substr(0, 40);
    for (std::string option : OptionNames(name)) {
      std::string escaped;
      for (const char c : option) escaped += c == '-' ? std::string("\\-") : std::string(1, c);
      EXPECT_NE(page.find(escaped), std::string::npos) << option;
    }
    if (!man) continue;
    const Outcome checked = RunProgram({"groff", "-man", "-Tutf8", "-ww", "-z"}, {.input = page});
    EXPECT_EQ(checked.err, "");
  }
  const std::string whole = RunVelora({"man"}).out;
  for (const std::string& name : CommandNames()) {
    EXPECT_NE(whole.find("velora\\-" + name + "\\fR(1)"), std::string::npos) << name;
  }
}

struct Completed {
  std::string line;                // words behind "velora", the last is being completed
  std::vector<std::string> words;  // among the answers
  std::vector<std::string> not_;   // not among them
};

TEST(SelfText, BashCompletes) {
  if (!HasProgram("bash")) GTEST_SKIP() << "no bash here";
  const Completed cases[] = {
      {"con", {"convert"}, {"info"}},
      {"''", {"info", "convert", "verify", "--version"}, {}},
      {"info --js", {"--json"}, {"--jobs"}},
      {"convert --to M", {"MPM"}, {"WAV", "MID"}},
      {"convert -t W", {"WAV"}, {"MPM"}},
      {"convert --bits ''", {"8", "16"}, {}},
      {"completion ''", {"bash", "zsh", "fish"}, {"info"}},
      {"help ver", {"verify"}, {"info"}},
  };
  for (const Completed& c : cases) {
    const Outcome run = RunProgram(
        {"bash", "-c",
         "compopt() { :; }; source <(\"$0\" completion bash); COMP_WORDS=(velora " + c.line +
             "); COMP_CWORD=$((${#COMP_WORDS[@]}-1)); _velora; printf '%s\\n' \"${COMPREPLY[@]}\"",
         VeloraProgram()});
    SCOPED_TRACE(c.line + " gave " + run.out + run.err);
    EXPECT_EQ(run.err, "");
    const auto words = Lines(run.out);
    for (const std::string& word : c.words) {
      EXPECT_NE(std::ranges::find(words, word), words.end()) << word;
    }
    for (const std::string& word : c.not_) {
      EXPECT_EQ(std::ranges::find(words, word), words.end()) << word;
    }
  }
}

TEST(SelfText, CompletionScriptsHaveEveryCommandAndOption) {
  const std::string zsh = RunVelora({"completion", "zsh"}).out;
  const std::string fish = RunVelora({"completion", "fish"}).out;
  const std::string bash = RunVelora({"completion", "bash"}).out;
  EXPECT_TRUE(zsh.starts_with("#compdef velora\n"));
  for (const std::string& name : CommandNames()) {
    EXPECT_NE(zsh.find("    '" + name + ":"), std::string::npos) << name;
    EXPECT_NE(fish.find(" -a " + name + " -d "), std::string::npos) << name;
    const size_t zshCase = zsh.find("      " + name + ")\n");
    const size_t bashCase = bash.find("    " + name + ")\n");
    ASSERT_NE(zshCase, std::string::npos) << name;
    ASSERT_NE(bashCase, std::string::npos) << name;
    const std::string zshPart = zsh.substr(zshCase, zsh.find(";;\n", zshCase) - zshCase);
    const std::string bashPart = bash.substr(bashCase, bash.find("esac", bashCase) - bashCase);
    const std::string condition = "__fish_seen_subcommand_from " + name + "' -l ";
    for (const std::string& option : OptionNames(name)) {
      EXPECT_NE(zshPart.find(option), std::string::npos) << name << " " << option;
      EXPECT_NE(bashPart.find(option), std::string::npos) << name << " " << option;
      EXPECT_NE(fish.find(condition + option.substr(2)), std::string::npos) << name << option;
    }
  }
}

TEST(SelfText, ShellsTakeTheirScripts) {
  int shells = 0;
  for (const std::string shell : {"bash", "zsh", "fish"}) {
    if (!HasProgram(shell)) continue;
    ++shells;
    const std::string script = RunVelora({"completion", shell}).out;
    const Outcome run = RunProgram({shell, "-n"}, {.input = script});
    EXPECT_EQ(run.status, 0) << shell << ": " << run.err;
  }
  if (shells == 0) GTEST_SKIP() << "none of the three shells is here";
}

// ---- JSON keys --------------------------------------------------------------

/// "events[].type": every key of a value, with the path to it.
void CollectKeys(const Json& value, const std::string& path, std::set<std::string>& keys) {
  if (value.is_object()) {
    for (const auto& [key, inner] : value.items()) {
      const std::string below = path.empty() ? key : path + "." + key;
      keys.insert(below);
      CollectKeys(inner, below, keys);
    }
  } else if (value.is_array()) {
    for (const Json& inner : value) CollectKeys(inner, path + "[]", keys);
  }
}

/// The first column of the table in the section "## JSON".
std::set<std::string> DocumentedKeys(const std::string& command) {
  std::set<std::string> keys;
  for (const std::string& line : Lines(Section(DocsPage(command), "## JSON"))) {
    if (!line.starts_with("| `")) continue;
    keys.insert(line.substr(3, line.find('`', 3) - 3));
  }
  return keys;
}

class JsonKeys : public ProgramTest {};

TEST_F(JsonKeys, AreThoseInTheDocs) {
  const std::string loops = Chunk("smpl", std::string(28, '\0') + U32(1) + U32(0) + U32(1) +
                                              U32(0) + U32(10) + U32(20) + U32(0) + U32(0));
  const std::string chunks =
      Marks({{100, "(12,5)"}, {200, "SILENCE", 50}, {300, "note"}}) + loops + Chunk("KIOD", "abcd");
  const std::string wave = MakeWave("a.wav", 4000, chunks);
  const std::string chip = MakeChip("b.MPM", 4000, chunks);
  std::string broken = ReadText(chip);
  broken[16] = static_cast<char>(broken[16] + 1);  // the header's file size
  WriteText(Path("c.MPM"), broken);
  // Without its silence block, of one record, at the end.
  WriteText(Path("d.MPM"), ReadText(chip).substr(0, std::filesystem::file_size(chip) - 24));

  struct Printed {
    const char* command;
    std::vector<std::vector<std::string>> lines;
  };
  const Printed all[] = {
      {"info", {{wave, chip, "missing"}, {"--explain", wave}}},
      {"convert", {{wave, "-o", Path("new.MPM")}, {"missing", "-o", Path("no.MPM")}}},
      {"verify", {{chip, Path("c.MPM"), Path("d.MPM"), "missing"}}},
      {"dump", {{chip}}},
      {"events", {{wave}}},
      {"formats", {{}}},
  };
  for (const Printed& printed : all) {
    std::set<std::string> keys;
    for (std::vector<std::string> words : printed.lines) {
      words.insert(words.begin(), {printed.command, "--json"});
      const Json value = Json::parse(RunVelora(words).out);
      if (value.is_array()) {
        for (const Json& element : value) CollectKeys(element, "", keys);
      } else {
        CollectKeys(value, "", keys);
      }
    }
    EXPECT_EQ(DocumentedKeys(printed.command), keys) << printed.command;
  }
}

}  // namespace
}  // namespace velora::test
