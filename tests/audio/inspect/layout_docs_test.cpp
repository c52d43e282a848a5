// docs/formats shows the layout tables of the code: the same rows in the same
// order, letter for letter.
#include <gtest/gtest.h>

#include <sstream>

#include "audio/inspect/FieldText.h"
#include "audio/inspect/Layouts.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using layout::Layout;
using layout::LayoutField;

std::string Document(const std::string& name) {
  return test::ReadText(std::string(VELORA_SOURCE_DIR) + "/docs/formats/" + name);
}

/// The rows of the first table under a heading "### NAME (N bytes)".
std::vector<std::string> TableRows(const std::string& document, const Layout& layout) {
  const std::string heading =
      "### " + std::string(layout.name) + " (" + std::to_string(layout.size) + " bytes)";
  std::istringstream lines(document);
  std::string line;
  while (std::getline(lines, line) && line != heading) {
  }
  std::vector<std::string> rows;
  while (std::getline(lines, line) && line.rfind('|', 0) != 0) {
  }
  for (; line.rfind('|', 0) == 0; std::getline(lines, line)) {
    if (line.rfind("| ", 0) == 0) rows.push_back(line);
  }
  return rows;
}

std::string Row(const LayoutField& field) {
  return "| " + std::to_string(field.offset) + " | " + std::to_string(field.size) + " | " +
         std::string(field.name) + " | " + std::string(field.value) + " | " +
         std::string(field.checkedBy) + " |";
}

struct DocumentCase {
  const char* name;
  std::span<const Layout> layouts;
};

const DocumentCase kDocuments[] = {
    {"wave.md", layout::WaveLayouts()},
    {"src.md", layout::SourceLayouts()},
    {"mpm.md", layout::MpmLayouts()},
};

TEST(LayoutDocs, ShowTheTablesOfTheCode) {
  for (const DocumentCase& test : kDocuments) {
    const std::string document = Document(test.name);
    for (const Layout& layout : test.layouts) {
      SCOPED_TRACE(std::string(test.name) + ": " + std::string(layout.name));
      std::vector<std::string> wanted = {"| offset | size | field | value | checked by |"};
      for (const LayoutField& field : layout.fields) wanted.push_back(Row(field));
      EXPECT_EQ(TableRows(document, layout), wanted);
    }
  }
}

TEST(LayoutDocs, HoldNoTableThatTheCodeHasNot) {
  for (const DocumentCase& test : kDocuments) {
    std::istringstream lines(Document(test.name));
    std::string line;
    size_t tables = 0;
    while (std::getline(lines, line)) tables += line.rfind("### ", 0) == 0;
    EXPECT_EQ(tables, test.layouts.size()) << test.name;
  }
}

TEST(Layouts, CoverTheirRecords) {
  for (const DocumentCase& test : kDocuments) {
    for (const Layout& layout : test.layouts) {
      uint32_t at = 0;
      for (const LayoutField& field : layout.fields) {
        EXPECT_EQ(field.offset, at) << layout.name << ": " << field.name;
        EXPECT_EQ(FindField(layout, field.name), &field) << "a name used twice: " << field.name;
        at += field.size;
      }
      EXPECT_EQ(at, layout.size) << layout.name;
    }
  }
}

}  // namespace
}  // namespace velora
