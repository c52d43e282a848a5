#include "audio/WaveFileUtil/CueFormatConverter.h"

#include <regex>

#include "foundation/ItemFile.h"
#include "foundation/ItemProperty.h"
#include "foundation/Logger.h"
#include "foundation/PathText.h"
#include "platform/File.h"

namespace velora {

class CueFormatTable {
 public:
  struct Pair {
    std::regex expression;
    std::string replacement;

    bool AppendMatches(const std::string& text, std::vector<std::string>& strings) const {
      const size_t before = strings.size();
      for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
           ++match) {
        strings.push_back(std::regex_replace(match->str(), expression, replacement));
      }
      return strings.size() > before;
    }
  };

  std::vector<Pair> pairs;
};

namespace {

void AddPair(I_ItemProperty& item, CueFormatTable& table) {
  const char* const expression = item.GetString("Regex");
  const char* const replacement = item.GetString("Repl");
  if (!expression || !replacement) return;
  try {
    table.pairs.push_back({std::regex(expression, std::regex::ECMAScript), replacement});
  } catch (const std::regex_error& error) {
    GetZuLog()->Log("CueFormatRegex.ini: [%s] Regex = %s: %s", kLogError, item.GetName(),
                    expression, error.what());
  }
}

}  // namespace

std::shared_ptr<const CueFormatTable> LoadCueFormats(const Path& path) {
  if (!FileExists(path)) return nullptr;
  auto file = OpenItemFile(path);
  if (!file) return nullptr;
  C_ItemProperty list(file.Value(), "Regex");
  int32_t count = 0;
  I_ItemProperty* const* const items = list.GetItemList("ExpList", &count);
  auto table = std::make_shared<CueFormatTable>();
  for (int32_t i = 0; i < count; ++i) AddPair(*items[i], *table);
  if (table->pairs.empty()) return nullptr;
  return table;
}

std::shared_ptr<const CueFormatTable> GetModuleCueFormats() {
  static const std::shared_ptr<const CueFormatTable> table =
      LoadCueFormats(Path::System(GetModuleDir(true) + "CueFormatRegex.ini"));
  return table;
}

C_CueFormatConverter::C_CueFormatConverter(std::shared_ptr<const CueFormatTable> table)
    : table_(std::move(table)), last_(table_->pairs.size()) {}

bool C_CueFormatConverter::Convert(std::string_view text, std::vector<std::string>& strings) {
  const std::vector<CueFormatTable::Pair>& pairs = table_->pairs;
  const std::string label(text);
  if (last_ < pairs.size() && pairs[last_].AppendMatches(label, strings)) return true;
  for (size_t i = 0; i < pairs.size(); ++i) {
    if (!pairs[i].AppendMatches(label, strings)) continue;
    last_ = i;
    return true;
  }
  return false;
}

}  // namespace velora
