// Boxes, the message handler and the loading of modules.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "foundation/DynamicLoad.h"
#include "foundation/FileHelpers.h"
#include "foundation/MessageBox.h"
#include "foundation/MsgHandler.h"
#include "platform/System.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora {
namespace {

class Window final : public I_MsgWindow {
 public:
  ~Window() { SetBoxOwner(nullptr); }
  int32_t ShowBox(const char* text, const char* caption, uint32_t style) override {
    box = std::string(caption) + "|" + text + "|" + std::to_string(style);
    return kAnswerYes;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }
  int32_t SendMessage(uint32_t message, uint32_t first, const MsgRecord* record) override {
    sent = {message, first};
    last = *record;
    return 0;
  }

  std::string box;
  std::vector<uint32_t> sent;
  MsgRecord last{};
};

TEST(ShowBoxTest, WithoutAWindowItIsALineAndARefusal) {
  const std::pair<uint32_t, int32_t> cases[] = {{kBoxOk, kAnswerOk},
                                                {kBoxOk | kBoxStop, kAnswerOk},
                                                {kBoxOkCancel | kBoxQuestion, kAnswerCancel},
                                                {kBoxYesNo | kBoxQuestion, kAnswerNo}};
  for (const auto& [style, answer] : cases) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(ShowBox(nullptr, "one\r\ntwo", "Title", style), answer) << style;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Title: one two\n");
  }
}

TEST(ShowBoxTest, TheOwnerGivenGoesBeforeTheRememberedOne) {
  Window remembered, given;
  SetBoxOwner(&remembered);
  EXPECT_EQ(ShowBox(&given, "a", "A", kBoxYesNo), kAnswerYes);
  EXPECT_EQ(given.box, "A|a|4");
  EXPECT_EQ(remembered.box, "");
  EXPECT_EQ(ShowBox(nullptr, "b", "B", kBoxOk), kAnswerYes);
  EXPECT_EQ(remembered.box, "B|b|0");
}

TEST(MsgHandlerTest, ChannelsAndKinds) {
  Window window;
  C_CUMsgHandler handler;
  handler.ReportText(kMsgWindow, "T", "nobody listens", 0);
  handler.Window = &window;

  handler.ReportText(kMsgNone, "T", "%d", 0, 1);
  EXPECT_EQ(window.box, "");
  EXPECT_TRUE(window.sent.empty());

  handler.ReportText(kMsgBox, "T", "%d", 3, 1);
  EXPECT_EQ(window.box, "T|1|3");

  const std::string text(400, 'x');
  handler.ReportText(kMsgWindow, "T", "%s", 2, text.c_str());
  EXPECT_EQ(window.sent, (std::vector<uint32_t>{1124, 0}));
  EXPECT_EQ(window.last.Kind, 2);
  EXPECT_EQ(window.last.Line, 0);
  EXPECT_STREQ(window.last.Source, "");
  EXPECT_EQ(window.last.Text, "Warning: " + text.substr(0, 246));

  testing::internal::CaptureStdout();
  handler.ReportText(kMsgStandardOutput, "T", "%s!", 3, "bad");
  handler.ReportText(kMsgStandardOutput, "T", "%s!", 0, "plain");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error: bad!\nplain!\n");
}

TEST(MsgHandlerTest, TextsById) {
  Window window;
  C_CUMsgHandler handler;
  handler.Window = &window;
  handler.ReportById(kMsgBox, 40960, 41218, 0x10, "C:\\x");
  EXPECT_EQ(window.box, "Error|File not found: 'C:\\x'|16");
  handler.ReportById(kMsgBox, 1, 41217, 0, "C:\\y");
  EXPECT_EQ(window.box, GetProgramFile() + "|Directory not found: 'C:\\y'|0");
}

TEST(LoadModuleTest, AMissingModule) {
  Window window;
  EXPECT_EQ(LoadModule("C:\\no\\Such.dll", nullptr, &window, false), nullptr);
  EXPECT_EQ(window.box, "");
  EXPECT_EQ(LoadModule("C:\\no\\Such.dll", nullptr, &window, true), nullptr);
  const std::string start = "Load Dll Library|Load 'C:\\no\\Such.dll' failed !\r\nError Code 126: ";
  EXPECT_EQ(window.box.substr(0, start.size()), start);
  EXPECT_EQ(LoadModule("C:\\no\\Such.dll", "Mine", &window, true), nullptr);
  EXPECT_EQ(window.box.substr(0, 5), "Mine|");
  EXPECT_EQ(GetExport(nullptr, "f", nullptr, &window, true), nullptr);
  EXPECT_EQ(window.box.substr(0, 5), "Mine|");
}

/// Native path of a shared library that this process has loaded already.
std::string LoadedLibrary() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find("/libm.so") != std::string::npos) return line.substr(line.find('/'));
  }
  return {};
}

TEST(LoadModuleTest, ExportsOfALoadedModule) {
  std::string path = LoadedLibrary();
  ASSERT_NE(path, "");
  std::replace(path.begin(), path.end(), '/', '\\');
  Window window;
  void* const module = LoadModule(path, nullptr, &window, true);
  ASSERT_NE(module, nullptr) << window.box;
  const auto root =
      reinterpret_cast<double (*)(double)>(GetExport(module, "sqrt", nullptr, &window, true));
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root(49.0), 7.0);
  EXPECT_EQ(GetExport(module, "NoSuchThing", nullptr, &window, false), nullptr);
  EXPECT_EQ(window.box, "");
  EXPECT_EQ(GetExport(module, "NoSuchThing", nullptr, &window, true), nullptr);
  EXPECT_EQ(window.box.find("Get Procedure Address|Get 'NoSuchThing()' address from '/"), 0u);
  EXPECT_NE(window.box.find("' failed !\r\nError Code 127: "), std::string::npos);
  FreeModule(module);
  FreeModule(nullptr);
}

TEST(FileStampTest, AModuleWithoutTheExportsAnswersFailure) {
  test::TempDir dir;
  std::filesystem::copy_file(LoadedLibrary(), dir / "FileStamp.so");
  const test::ModuleFile module(dir / "Module.so");
  const C_CUFileStamp stamp;
  const Path file = Path::Native(dir / "FileStamp.so");
  Window window;
  SetBoxOwner(&window);
  EXPECT_EQ(stamp.GetFileLength(file), -1);
  EXPECT_EQ(window.box.find("File Attributes|Get 'GetFileLen()' address from"), 0u);
  FileTime times[3];
  EXPECT_FALSE(stamp.GetFileTimes(file, &times[0], &times[1], &times[2]));
  EXPECT_EQ(window.box.find("File Attributes|Get 'GetFileTimes()' address from"), 0u);
}

}  // namespace
}  // namespace velora
