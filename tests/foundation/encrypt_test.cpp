// Enciphered files in both forms: what is read, written and answered.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <random>

#include "PublishedPC1.h"
#include "foundation/EncryptNewPC1.h"
#include "foundation/EncryptPaths.h"
#include "support/RawTable.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::NewForm;
using test::OldForm;
using test::RawTable;
using test::ReadText;
using test::TempDir;
using test::WriteText;

std::string Sample(size_t size) {
  std::mt19937 random(7);
  std::string text(size, 0);
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

/// The passwords as GetPasswords gives them, joined by "|"; "code N" on failure.
std::string Passwords(C_EncryptPC1& object, const std::string& path) {
  int32_t count = -1, bytes = -1;
  if (!object.GetPasswordInfo(path.c_str(), &count, &bytes)) return "no header";
  std::string buffer(static_cast<size_t>(bytes), '#');
  const int32_t code = object.GetPasswords(path.c_str(), buffer.data());
  if (code != 0) return "code " + std::to_string(code);
  EXPECT_EQ(buffer.substr(buffer.size() - 2), std::string("\0#", 2)) << "as many bytes as told";
  std::string joined;
  for (const char* at = buffer.data(); count > 0; --count) {
    joined.append(joined.empty() ? "" : "|").append(at);
    at += std::strlen(at) + 1;
  }
  return joined;
}

struct Form {
  const char* name;
  bool isNew;
  std::string Make(const std::vector<std::string>& passwords, std::string_view plain) const {
    return isNew ? NewForm(passwords, "song.wav", plain) : OldForm(passwords, plain);
  }
  std::unique_ptr<C_EncryptPC1> Object() const {
    if (isNew) return std::make_unique<C_EncryptNewPC1>();
    return std::make_unique<C_EncryptPC1>();
  }
};

class EncryptForms : public testing::TestWithParam<Form> {
 protected:
  std::unique_ptr<C_EncryptPC1> object_ = GetParam().Object();
  TempDir dir_;
  std::string source_ = dir_ / "song.wav";
  std::string coded_ = dir_ / "coded.kmd";
  std::string plain_ = dir_ / "plain";
};

INSTANTIATE_TEST_SUITE_P(Both, EncryptForms, testing::Values(Form{"Old", false}, Form{"New", true}),
                         [](const auto& tested) { return tested.param.name; });

TEST_P(EncryptForms, WritesTheFormByteForByte) {
  for (const size_t size : {0, 1, 1000, 200000}) {
    const std::string plain = Sample(size);
    WriteText(source_, plain);
    EXPECT_EQ(object_->EncipherFile(source_.c_str(), coded_.c_str(), "secret", nullptr), 0);
    EXPECT_EQ(ReadText(coded_), GetParam().Make({"secret"}, plain));
    EXPECT_EQ(object_->EncipherFile(source_.c_str(), coded_.c_str(), nullptr, nullptr), 0);
    EXPECT_EQ(ReadText(coded_), GetParam().Make({}, plain));
    EXPECT_EQ(object_->EncipherFile(source_.c_str(), coded_.c_str(), "", nullptr), 0);
    EXPECT_EQ(ReadText(coded_), GetParam().Make({""}, plain)) << "an empty key is a key";
  }
}

TEST_P(EncryptForms, EachPasswordOpensAndNoOtherText) {
  const std::string plain = Sample(70000);
  WriteText(coded_, GetParam().Make({"master", "guest", ""}, plain));
  struct Case {
    const char* key;
    int32_t code;
  };
  // "asterm" gives the same cipher key as "master" and is still no password.
  for (const Case& each : {Case{"master", 0}, Case{"guest", 0}, Case{"", 0}, Case{nullptr, 4},
                           Case{"asterm", 4}, Case{"Master", 4}, Case{"guest ", 4}}) {
    WriteText(plain_, "old");
    EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), each.key, nullptr), each.code);
    EXPECT_TRUE(ReadText(plain_) == (each.code == 0 ? plain : "old")) << each.code;
  }
}

TEST_P(EncryptForms, AFileWithoutPasswordsOpensWithAnyKey) {
  WriteText(coded_, GetParam().Make({}, "open to all"));
  for (const char* const key : {"anything", "", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), key, nullptr), 0);
    EXPECT_EQ(ReadText(plain_), "open to all");
  }
}

TEST_P(EncryptForms, ListsPasswords) {
  const std::string longest(32, 'x');
  WriteText(coded_, GetParam().Make({"one", "", longest}, "data"));
  EXPECT_EQ(Passwords(*object_, coded_), "one||" + longest);
  WriteText(coded_, GetParam().Make({}, "data"));
  EXPECT_EQ(Passwords(*object_, coded_), "");

  int32_t count = 77, bytes = 88;
  EXPECT_EQ(object_->GetPasswordInfo((dir_ / "none").c_str(), &count, &bytes), 1);
  EXPECT_EQ(count, 77) << "a file that can't be opened changes nothing";
  EXPECT_EQ(bytes, 88);
  EXPECT_EQ(object_->GetPasswords((dir_ / "none").c_str(), nullptr), 1);
}

TEST_P(EncryptForms, APasswordAbove32BytesIsNotReadBack) {
  WriteText(source_, "data");
  const std::string tooLong(33, 'x');
  EXPECT_EQ(object_->EncipherFile(source_.c_str(), coded_.c_str(), tooLong.c_str(), nullptr), 0);
  EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), tooLong.c_str(), nullptr), 6);
  const std::string wraps(65536 + 5, 'x');
  EXPECT_EQ(object_->EncipherFile(source_.c_str(), coded_.c_str(), wraps.c_str(), nullptr), 0);
  EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), "xxxxx", nullptr), 6);
}

TEST_P(EncryptForms, AddsAPassword) {
  const std::string plain = Sample(3000);
  WriteText(coded_, GetParam().Make({"master", "guest"}, plain));
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "guest", "new"), 4) << "the master key alone";
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), nullptr, "new"), 4);
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", "guest"), 1);
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", "master"), 1);
  EXPECT_EQ(ReadText(coded_), GetParam().Make({"master", "guest"}, plain));
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", "new"), 0);
  EXPECT_EQ(ReadText(coded_), GetParam().Make({"master", "guest", "new"}, plain));
  EXPECT_EQ(dir_.Entries(), std::vector<std::string>{"coded.kmd"});
}

TEST_P(EncryptForms, AFileWithoutPasswordsIsEncipheredAnewForTheFirst) {
  const std::string plain = Sample(100000);
  WriteText(coded_, GetParam().Make({}, plain));
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), nullptr, "first"), 1);
  EXPECT_TRUE(ReadText(coded_) == GetParam().Make({"first"}, plain));
  EXPECT_EQ(dir_.Entries(), std::vector<std::string>{"coded.kmd"}) << "no plain text left about";
}

TEST_P(EncryptForms, AddsNoPasswordThatWouldLockTheFile) {
  const std::string before = GetParam().Make({"master"}, "data");
  WriteText(coded_, before);
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", std::string(33, 'x').c_str()), 4);
  EXPECT_EQ(ReadText(coded_), before);
  EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", std::string(32, 'x').c_str()), 0);
  EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), "master", nullptr), 0);
  EXPECT_EQ(ReadText(plain_), "data");
}

TEST_P(EncryptForms, RemovesAPassword) {
  WriteText(coded_, GetParam().Make({"master", "guest", "other"}, "data"));
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "guest", "other"), 4);
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), nullptr, "other"), 4);
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "master", "nobody"), 5);
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "master", "master"), 5);
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "master", "guest"), 0);
  EXPECT_EQ(ReadText(coded_), GetParam().Make({"master", "other"}, "data"));

  const std::string open = GetParam().Make({}, "data");
  WriteText(coded_, open);
  EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "any", "any"), 0);
  EXPECT_EQ(ReadText(coded_), open);
}

TEST_P(EncryptForms, FilesThatAreNotThere) {
  const std::string none = dir_ / "none";
  EXPECT_EQ(object_->EncipherFile(none.c_str(), coded_.c_str(), nullptr, nullptr), 1);
  EXPECT_EQ(object_->DecipherFile(none.c_str(), coded_.c_str(), nullptr, nullptr), 1);
  EXPECT_EQ(object_->AddPassword(none.c_str(), "a", "b"), 1);
  EXPECT_EQ(object_->RemovePassword(none.c_str(), "a", "b"), 1);
  EXPECT_EQ(object_->EncipherFile(nullptr, nullptr, nullptr, nullptr), 1);
  EXPECT_TRUE(dir_.Entries().empty());

  WriteText(source_, "data");
  WriteText(coded_, GetParam().Make({}, "data"));
  const std::string nowhere = dir_ / "no/such/file";
  EXPECT_EQ(object_->EncipherFile(source_.c_str(), nowhere.c_str(), nullptr, nullptr), 2);
  EXPECT_EQ(object_->EncipherFile(source_.c_str(), nullptr, nullptr, nullptr), 2);
  EXPECT_EQ(object_->DecipherFile(coded_.c_str(), nowhere.c_str(), nullptr, nullptr), 2);
}

TEST_P(EncryptForms, ASourceIsNeverItsOwnTarget) {
  WriteText(source_, "data");
  const std::string coded = GetParam().Make({}, "data");
  WriteText(coded_, coded);
  std::filesystem::create_symlink(coded_, dir_ / "link");
  EXPECT_EQ(object_->EncipherFile(source_.c_str(), source_.c_str(), nullptr, nullptr), 2);
  EXPECT_EQ(object_->DecipherFile(coded_.c_str(), (dir_ / "link").c_str(), nullptr, nullptr), 2);
  EXPECT_EQ(ReadText(source_), "data");
  EXPECT_EQ(ReadText(coded_), coded);
}

TEST_P(EncryptForms, EveryCutHeaderIsNoHeader) {
  const std::string whole = GetParam().Make({"master", "guest"}, "");
  for (size_t size = 0; size < whole.size(); ++size) {
    WriteText(coded_, whole.substr(0, size));
    EXPECT_EQ(object_->GetPasswordInfo(coded_.c_str(), nullptr, nullptr), 0) << size;
    EXPECT_EQ(object_->DecipherFile(coded_.c_str(), plain_.c_str(), "master", nullptr), 6) << size;
    EXPECT_EQ(object_->AddPassword(coded_.c_str(), "master", "new"), 6) << size;
    EXPECT_EQ(object_->RemovePassword(coded_.c_str(), "master", "guest"), 6) << size;
    EXPECT_EQ(object_->GetPasswords(coded_.c_str(), nullptr), 6) << size;
  }
  EXPECT_EQ(dir_.Entries(), std::vector<std::string>{"coded.kmd"});
}

class Reports final : public I_ProgressCallback {
 public:
  void Begin() override { text += "begin"; }
  void Report(int32_t percent) override {
    EXPECT_GT(percent, last);
    last = percent;
    ++count;
  }
  void End() override { text += " end at " + std::to_string(last); }
  std::string text;
  int32_t last = -1;
  int count = 0;
};

TEST_P(EncryptForms, TellsWholePercentsOnce) {
  WriteText(source_, Sample(64 * 1024 * 30));
  Reports enciphering, deciphering, refused;
  object_->EncipherFile(source_.c_str(), coded_.c_str(), "key", &enciphering);
  EXPECT_EQ(enciphering.text, "begin end at 100");
  EXPECT_EQ(enciphering.count, 30);
  object_->DecipherFile(coded_.c_str(), plain_.c_str(), "key", &deciphering);
  EXPECT_EQ(deciphering.text, "begin end at 100");
  object_->DecipherFile(coded_.c_str(), plain_.c_str(), "bad", &refused);
  EXPECT_EQ(refused.text, "");
  WriteText(source_, "");
  Reports empty;
  object_->EncipherFile(source_.c_str(), coded_.c_str(), "key", &empty);
  EXPECT_EQ(empty.text, "begin end at 100");
}

TEST_P(EncryptForms, DeciphersIntoMemory) {
  WriteText(coded_, GetParam().Make({"master", "guest"}, "data"));
  const Result<InputFile> file = InputFile::Open(Path::Native(coded_));
  std::vector<std::byte> plain;
  const Path path = Path::Native(coded_);
  EXPECT_EQ(object_->DecipherToMemory(path, file.Value(), "nobody", plain), kEncryptWrongKey);
  EXPECT_TRUE(plain.empty());
  EXPECT_EQ(object_->DecipherToMemory(path, file.Value(), "guest", plain), kEncryptDone);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(plain.data()), plain.size()), "data");
}

TEST_P(EncryptForms, TableOrder) {
  C_EncryptPC1* const object = GetParam().Object().release();
  const RawTable table(static_cast<I_Encrypt*>(object));
  WriteText(source_, "abc");
  const char* const source = source_.c_str();
  const char* const coded = coded_.c_str();
  const char* const plain = plain_.c_str();
  const char* const key = "k";
  const char* const other = "other";
  auto* const nobody = static_cast<I_ProgressCallback*>(nullptr);
  EXPECT_EQ(table.Call<int32_t>(3, source, coded, key, nobody), 0);
  EXPECT_EQ(ReadText(coded_), GetParam().Make({"k"}, "abc"));
  EXPECT_EQ(table.Call<int32_t>(7, coded, key, other), 0);
  int32_t count = 0, bytes = 0;
  EXPECT_EQ(table.Call<int32_t>(1, coded, &count, &bytes), 1);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(bytes, 2 + 6 + 2);
  char passwords[10] = {};
  EXPECT_EQ(table.Call<int32_t>(2, coded, static_cast<char*>(passwords)), 0);
  EXPECT_STREQ(passwords + 2, "other");
  EXPECT_EQ(table.Call<int32_t>(8, coded, key, other), 0);
  EXPECT_EQ(table.Call<int32_t>(4, coded, plain, key, nobody), 0);
  EXPECT_EQ(ReadText(plain_), "abc");
  char buffer[] = "abc";
  table.Call<void>(5, static_cast<const void*>(buffer), static_cast<void*>(buffer), uint32_t{3});
  EXPECT_EQ(std::string(buffer, 3), test::Enciphered("abc"));
  table.Call<void>(6, static_cast<const void*>(buffer), static_cast<void*>(buffer), uint32_t{3});
  EXPECT_STREQ(buffer, "abc");
  table.Call<void>(0);  // a leak when this is not the release
}

// The newer form alone.

class EncryptNew : public testing::Test {
 protected:
  C_EncryptNewPC1 object_;
  TempDir dir_;
  std::string coded_ = dir_ / "coded.kmd";
  std::string plain_ = dir_ / "plain";

  int32_t Decipher(const std::string& file, const char* key) {
    WriteText(coded_, file);
    return object_.DecipherFile(coded_.c_str(), plain_.c_str(), key, nullptr);
  }
};

TEST_F(EncryptNew, HeadersOfEveryKind) {
  const std::string name = test::Chunk(0x100, 1, test::Enciphered("n"));
  const std::string key = test::PasswordChunk("k");
  const std::string data = test::Chunk(0x101, 4) + test::Enciphered("data", "k");
  const std::string count = test::Chunk(0x200, 2, test::LengthWord(9));
  const std::string unknown = test::Chunk(0x777, 70000, std::string(70000, '?'));
  std::string badCheck = test::Chunk(0x200, 2, test::LengthWord(1));
  badCheck[0] ^= 1;
  struct Case {
    const char* what;
    std::string file;
    int32_t code;
  };
  const std::vector<Case> cases = {
      {"plain", "KENC" + name + key + data, 0},
      {"no name", "KENC" + key + data, 0},
      {"entries count, not the count", "KENC" + count + key + data, 0},
      {"unknown chunk of 70,000 bytes", "KENC" + unknown + key + data, 0},
      {"entry shorter than its chunk",
       "KENC" + test::Chunk(0x201, 10, test::Entry("k") + "rest...") + data, 0},
      {"data size told wrong",
       "KENC" + key + test::Chunk(0x101, 0xFFFFFFFF) + test::Enciphered("data", "k"), 0},
      {"bad check", "KENC" + key + badCheck + data, 6},
      {"other mark", "KEND" + key + data, 6},
      {"no data chunk", "KENC" + key, 6},
      {"entry longer than its chunk", "KENC" + test::Chunk(0x201, 2, test::Entry("k")) + data, 6},
      {"name of 256 bytes",
       "KENC" + test::Chunk(0x100, 256, test::Enciphered(std::string(256, 'n'))) + key + data, 6},
      {"unknown chunk past the end", "KENC" + test::Chunk(0x777, 0xFFFFFFFF) + key + data, 6},
  };
  for (const Case& each : cases) {
    std::filesystem::remove(plain_);
    EXPECT_EQ(Decipher(each.file, "k"), each.code) << each.what;
    if (each.code == 0) {
      EXPECT_EQ(ReadText(plain_), "data") << each.what;
    }
    EXPECT_EQ(object_.GetPasswordInfo(coded_.c_str(), nullptr, nullptr), each.code == 0 ? 1 : 0)
        << each.what;
  }
}

TEST_F(EncryptNew, ChangingTheListKeepsTheNameInTheHeader) {
  WriteText(coded_, NewForm({}, "Original Name.wav", "data"));
  EXPECT_EQ(object_.AddPassword(coded_.c_str(), nullptr, "a"), 1);
  EXPECT_EQ(object_.AddPassword(coded_.c_str(), "a", "b"), 0);
  EXPECT_EQ(object_.RemovePassword(coded_.c_str(), "a", "b"), 0);
  EXPECT_EQ(ReadText(coded_), NewForm({"a"}, "Original Name.wav", "data"));
}

TEST_F(EncryptNew, KeepsTheWholeNameOfTheSource) {
  const std::string source = dir_ / (std::string(250, 'n') + ".wav");
  WriteText(source, "data");
  EXPECT_EQ(object_.EncipherFile(source.c_str(), coded_.c_str(), nullptr, nullptr), 0);
  EXPECT_EQ(ReadText(coded_), NewForm({}, std::string(250, 'n') + ".wav", "data"));
}

TEST_F(EncryptNew, WithoutATargetTheHeaderNamesIt) {
  std::filesystem::create_directory(dir_ / "out");
  struct Case {
    const char* header;
    const char* file;
  };
  for (const Case& each :
       {Case{"song.wav", "song.wav"}, Case{"../../song.wav", "song.wav"},
        Case{"C:\\Windows\\song.wav", "song.wav"}, Case{"C:song.wav", "song.wav"},
        Case{"", "coded.kmd"}, Case{"..", "coded.kmd"}, Case{".", "coded.kmd"},
        Case{"a/", "coded.kmd"}, Case{"bad\nname", "coded.kmd"}}) {
    WriteText(dir_ / "coded.kif", NewForm({}, each.header, "data"));
    for (const std::string& target : {std::string(), dir_ / "out", dir_ / "out/"}) {
      const std::string expected = dir_ / (target.empty() ? "" : "out/") + each.file;
      std::filesystem::remove(expected);
      EXPECT_EQ(object_.DecipherFile((dir_ / "coded.kif").c_str(),
                                     target.empty() ? nullptr : target.c_str(), nullptr, nullptr),
                0);
      ASSERT_TRUE(std::filesystem::exists(expected)) << each.header << " to " << expected;
      EXPECT_EQ(ReadText(expected), "data");
    }
  }
}

TEST_F(EncryptNew, OpensTheOlderFormInKifFilesAlone) {
  const std::string old = OldForm({"QZK40372"}, "X = 1");
  struct Case {
    const char* name;
    int32_t code;
  };
  for (const Case& each : {Case{"a.kif", 0}, Case{"a.b.kif", 0}, Case{"a.KIF", 6}, Case{"a.kmd", 6},
                           Case{"kif", 6}, Case{"a.kif.cfg", 6}}) {
    const std::string path = dir_ / each.name;
    WriteText(path, old);
    EXPECT_EQ(object_.DecipherFile(path.c_str(), plain_.c_str(), "QZK40372", nullptr), each.code);
    int32_t count = 0;
    EXPECT_EQ(object_.GetPasswordInfo(path.c_str(), &count, nullptr), each.code == 0 ? 1 : 0);
    EXPECT_EQ(count, each.code == 0 ? 1 : 0);
  }
  const std::string path = dir_ / "a.kif";
  EXPECT_EQ(object_.DecipherFile(path.c_str(), plain_.c_str(), "other", nullptr), 4);
  EXPECT_EQ(object_.DecipherFile(path.c_str(), nullptr, "QZK40372", nullptr), 0);
  EXPECT_EQ(ReadText(dir_ / "a.kmd"), "X = 1");
}

// The older form has no mark. The mask of its length words is such that text does
// not pass for it.
TEST_F(EncryptNew, PlainTextInAKifFileIsNotTakenForTheOlderForm) {
  const std::string path = dir_ / "a.kif";
  for (const char* const text :
       {"", "[", "[A", "[A]\nX = 1\n", ";\r\n", "\xEF\xBB\xBF[A]\n", "    "}) {
    WriteText(path, text);
    EXPECT_EQ(object_.GetPasswordInfo(path.c_str(), nullptr, nullptr), 0) << text;
  }
}

// The older form alone.

TEST(EncryptOld, TheTargetIsTheSourceAsKmd) {
  C_EncryptPC1 object;
  TempDir dir;
  std::filesystem::create_directory(dir / "a.b");
  for (const auto& [source, target] : std::vector<std::pair<std::string, std::string>>{
           {"x.kif", "x.kmd"}, {"y", "y.kmd"}, {"a.b/z", "a.b/z.kmd"}, {"v.1.enc", "v.1.kmd"}}) {
    WriteText(dir / source, OldForm({}, source));
    EXPECT_EQ(object.DecipherFile((dir / source).c_str(), nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(ReadText(dir / target), source);
  }
  const std::string own = dir / "w.kmd";
  WriteText(own, OldForm({}, "data"));
  EXPECT_EQ(object.DecipherFile(own.c_str(), nullptr, nullptr, nullptr), 2);
  EXPECT_EQ(ReadText(own), OldForm({}, "data"));
}

TEST(EncryptPaths, SeparatorsGoByTheKindOfPath) {
  const Path system = Path::System("C:\\a.b\\c"), drive = Path::System("C:c.x");
  const Path native = Path::Native("/d/a\\b.c");
  EXPECT_EQ(NameOf(system), "c");
  EXPECT_EQ(ExtensionOf(system), "");
  EXPECT_EQ(NameOf(drive), "c.x");
  EXPECT_EQ(NameOf(native), "a\\b.c");
  EXPECT_EQ(WithExtension(Path::Native("/d.e/f"), ".kmd").Text(), "/d.e/f.kmd");
  EXPECT_EQ(InFolder(Path::System("C:\\a"), "b").Text(), "C:\\a\\b");
  EXPECT_EQ(InFolder(Path::Native("a"), "b").Text(), "a/b");
  EXPECT_EQ(InFolder(Path::Native(""), "b").Text(), "b");
}

}  // namespace
}  // namespace velora
