#include "platform/File.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <numeric>

#include "support/TempDir.h"

namespace velora {
namespace {

using test::ReadText;
using test::TempDir;
using test::WriteText;

Status WriteTextTo(const Path& path, const std::string& text) {
  Result<OutputFile> file = OutputFile::Create(path);
  if (!file) return file.GetStatus();
  if (Status status = file->Write(std::as_bytes(std::span(text))); !status) return status;
  return file->Close();
}

std::function<Status(const Path&)> Writer(const std::string& text) {
  return [text](const Path& temporary) { return WriteTextTo(temporary, text); };
}

TEST(OutputFile, PiecesOfAnySizeArriveInOrder) {
  TempDir dir;
  std::string expected;
  Result<OutputFile> file = OutputFile::Create(Path::Native(dir / "f"));
  ASSERT_TRUE(file.Ok()) << file.Message();
  for (const size_t size : {1u, 70'000u, 65'535u, 2u, 65'536u, 0u, 3u}) {
    std::string piece(size, '\0');
    std::iota(piece.begin(), piece.end(), static_cast<char>(expected.size()));
    ASSERT_TRUE(file->Write(std::as_bytes(std::span(piece))).Ok());
    expected += piece;
    EXPECT_EQ(file->Position(), expected.size());
  }
  ASSERT_TRUE(file->Close().Ok());
  EXPECT_EQ(ReadText(dir / "f"), expected);
}

TEST(OutputFile, AFullDiskIsReported) {
  Result<OutputFile> file = OutputFile::Create(Path::Native("/dev/full"));
  ASSERT_TRUE(file.Ok()) << file.Message();
  const std::string text = "never arrives";
  Status status = file->Write(std::as_bytes(std::span(text)));
  if (status) status = file->Close();
  EXPECT_EQ(status.Message(), "cannot write: No space left on device");
}

TEST(InputFile, ShortReadsAndErrorsSayWhereTheFileEnds) {
  TempDir dir;
  WriteText(dir / "f", "0123456789");
  Result<InputFile> opened = InputFile::Open(Path::Native(dir / "f"));
  ASSERT_TRUE(opened.Ok());
  const InputFile inMemory = InputFile::FromBytes(test::ReadBytes(dir / "f"));
  for (const InputFile* file :
       std::initializer_list<const InputFile*>{&opened.Value(), &inMemory}) {
    std::byte buffer[8];
    ASSERT_EQ(file->ReadAt(4, buffer).Value(), 6u);
    EXPECT_EQ(std::to_integer<char>(buffer[5]), '9');
    EXPECT_EQ(file->ReadAt(10, buffer).Value(), 0u);
    EXPECT_EQ(file->ReadAt(UINT64_MAX, buffer).Value(), 0u);
    EXPECT_EQ(file->ReadExactly(4, buffer).Message(),
              "ends at byte 10, but 8 bytes are wanted at offset 4");
  }
  EXPECT_EQ(InputFile::Open(Path::Native(dir / "none")).Message(),
            "cannot open: No such file or directory");
  EXPECT_EQ(InputFile::Open(Path::Native(dir.path().string())).Message(), "is a directory");
}

TEST(SaveAtomically, ReplacesWholeKeepsModeAndFollowsLinks) {
  TempDir dir;
  WriteText(dir / "real", "old");
  ASSERT_EQ(chmod((dir / "real").c_str(), 0640), 0);
  std::filesystem::create_symlink("real", dir / "link");
  ASSERT_TRUE(SaveAtomically(Path::Native(dir / "link"), Writer("new")).Ok());
  EXPECT_EQ(ReadText(dir / "real"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(dir / "link"));
  struct stat facts;
  ASSERT_EQ(stat((dir / "real").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0640u);
  EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"link", "real"}));
}

TEST(SaveAtomically, TheTemporaryFileIsPrivateAndBesideTheTarget) {
  TempDir dir;
  const Status status = SaveAtomically(Path::Native(dir / "t"), [&](const Path& temporary) {
    struct stat facts;
    EXPECT_EQ(stat(temporary.Text().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
    EXPECT_EQ(std::filesystem::path(temporary.Text()).parent_path(), dir.path());
    return WriteTextTo(temporary, "x");
  });
  ASSERT_TRUE(status.Ok()) << status.Message();
  struct stat facts;
  ASSERT_EQ(stat((dir / "t").c_str(), &facts), 0);
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(facts.st_mode & 0777, 0666u & ~mask);
}

TEST(SaveAtomically, AFailureLeavesTheOldFileAndNothingElse) {
  TempDir dir;
  WriteText(dir / "t", "old");
  const Status status = SaveAtomically(Path::Native(dir / "t"), [](const Path& temporary) {
    EXPECT_TRUE(WriteTextTo(temporary, "half").Ok());
    return Status::Error("the source broke");
  });
  EXPECT_EQ(status.Message(), "the source broke");
  EXPECT_EQ(ReadText(dir / "t"), "old");
  EXPECT_EQ(dir.Entries(), std::vector<std::string>{"t"});

  EXPECT_EQ(SaveAtomically(Path::Native(dir / "none/t"), Writer("x")).Message(),
            "cannot create a file in its directory: No such file or directory");
}

TEST(SaveAtomically, AnExistingTargetIsRefusedWhenItMayNotBeReplaced) {
  TempDir dir;
  WriteText(dir / "t", "old");
  const SaveOptions keep{.flush = false, .replace = false};
  EXPECT_EQ(SaveAtomically(Path::Native(dir / "t"), Writer("new"), keep).Message(),
            "exists already");
  EXPECT_EQ(ReadText(dir / "t"), "old");
  // One that appears while the new one is being written counts too.
  const Status late = SaveAtomically(
      Path::Native(dir / "late"),
      [&](const Path& temporary) {
        WriteText(dir / "late", "theirs");
        return WriteTextTo(temporary, "ours");
      },
      keep);
  EXPECT_EQ(late.Message(), "exists already");
  EXPECT_EQ(ReadText(dir / "late"), "theirs");
  EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"late", "t"}));
}

TEST(SaveAtomically, SourceAndTargetMayBeOneFileUnderTwoNames) {
  TempDir dir;
  WriteText(dir / "a", "content");
  std::filesystem::create_hard_link(dir / "a", dir / "b");
  EXPECT_TRUE(IsSameFile(Path::Native(dir / "a"), Path::Native(dir / "b")));
  const Status status = SaveAtomically(Path::Native(dir / "b"), [&](const Path& temporary) {
    const Result<std::string> text = ReadWholeText(Path::Native(dir / "a"));
    return text ? WriteTextTo(temporary, text.Value() + "!") : text.GetStatus();
  });
  ASSERT_TRUE(status.Ok());
  EXPECT_EQ(ReadText(dir / "a"), "content");
  EXPECT_EQ(ReadText(dir / "b"), "content!");
}

TEST(SaveAtomically, ATargetThatIsNoRegularFileIsWrittenDirectly) {
  EXPECT_TRUE(SaveAtomically(Path::Native("/dev/null"), Writer("x")).Ok());
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(SaveAtomically, AKilledSaveLeavesTheOldFileAndTheNextOneTidiesUp) {
  TempDir dir;
  WriteText(dir / "t", "old");
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const Status never = SaveAtomically(Path::Native(dir / "t"), [](const Path& temporary) {
      const Status half = WriteTextTo(temporary, "half");
      kill(getpid(), SIGKILL);
      return half;
    });
    _exit(never ? 1 : 2);
  }
  int outcome = 0;
  ASSERT_EQ(waitpid(child, &outcome, 0), child);
  ASSERT_TRUE(WIFSIGNALED(outcome));
  EXPECT_EQ(ReadText(dir / "t"), "old");
  EXPECT_EQ(dir.Entries().size(), 2u) << "the killed process leaves one file";

  ASSERT_TRUE(SaveAtomically(Path::Native(dir / "t"), Writer("new")).Ok());
  EXPECT_EQ(ReadText(dir / "t"), "new");
  EXPECT_EQ(dir.Entries(), std::vector<std::string>{"t"});
}

TEST(SaveAtomically, NamesOfTheGreatestLengthCanBeSaved) {
  TempDir dir;
  const std::string name(255, 'n');
  ASSERT_TRUE(SaveAtomically(Path::Native(dir / name), Writer("x")).Ok());
  EXPECT_EQ(ReadText(dir / name), "x");
}

TEST(TemporaryFile, GoesWithItsObject) {
  std::string path;
  {
    Result<TemporaryFile> file = TemporaryFile::Create("velora-test-");
    ASSERT_TRUE(file.Ok()) << file.Message();
    path = file->GetPath().Text();
    struct stat facts;
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
    TemporaryFile moved = std::move(file.Value());
    EXPECT_TRUE(std::filesystem::exists(path));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace velora
