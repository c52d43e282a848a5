// Any bytes as an enciphered file of either form. A file that opens must keep its
// data and its passwords when its list is changed.
//
// The first byte chooses: 0 and 1 take the rest as the file itself in the older
// and the newer form. 2 and up take it as a file of the newer form before its
// headers were enciphered, since no fuzzer finds a header by chance: type and size
// of a chunk, four and four bytes of which two make the check wrong when set, then
// its body.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "foundation/EncryptNewPC1.h"
#include "fuzz_file.h"

namespace {

using namespace velora;
using Bytes = std::vector<uint8_t>;

void Require(bool condition) {
  if (!condition) std::abort();
}

uint16_t WordAt(const Bytes& bytes, size_t at) {
  return static_cast<uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

/// Enciphers each header of the script, which names as much body as there is.
Bytes BuildFile(const Bytes& script) {
  C_EncryptNewPC1 cipher;
  Bytes file = {'K', 'E', 'N', 'C'};
  size_t at = 0;
  while (script.size() - at >= 8) {
    const uint16_t type = WordAt(script, at + 2), low = WordAt(script, at + 4),
                   high = WordAt(script, at + 6);
    const auto check = static_cast<uint16_t>(WordAt(script, at) - type - low - high);
    const uint16_t header[4] = {check, type, low, high};
    uint8_t bytes[8];
    std::memcpy(bytes, header, sizeof(bytes));
    cipher.EncipherBuffer(bytes, bytes, sizeof(bytes));
    file.insert(file.end(), bytes, bytes + sizeof(bytes));
    at += sizeof(bytes);
    const size_t size = type == 0x101 ? script.size() : low | static_cast<size_t>(high) << 16;
    const size_t body = std::min(size, script.size() - at);
    const auto start = script.begin() + static_cast<ptrdiff_t>(at);
    file.insert(file.end(), start, start + static_cast<ptrdiff_t>(body));
    at += body;
  }
  file.insert(file.end(), script.begin() + static_cast<ptrdiff_t>(at), script.end());
  return file;
}

struct Content {
  std::vector<std::string> passwords;
  std::vector<std::byte> plain;
  bool operator==(const Content&) const = default;
};

/// What the file holds; false when it is not enciphered in the form.
bool Open(C_EncryptPC1& object, const Path& path, Content& content) {
  const EncryptCode code = object.ReadPasswords(path, content.passwords);
  Require(code == kEncryptDone || code == kEncryptNoHeader);
  if (code != kEncryptDone) return false;
  const Result<InputFile> file = InputFile::Open(path);
  const std::string key = content.passwords.empty() ? "any" : content.passwords.front();
  Require(object.DecipherToMemory(path, file.Value(), key, content.plain) == kEncryptDone);
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static const fuzz::FuzzDirectory directory;
  Bytes bytes(data + 1, data + size);
  if (data[0] >= 2) bytes = BuildFile(bytes);
  const Path path = directory.Write("in.kmd", bytes.data(), bytes.size());
  std::unique_ptr<C_EncryptPC1> object = std::make_unique<C_EncryptNewPC1>();
  if (data[0] == 0) object = std::make_unique<C_EncryptPC1>();

  Content before;
  if (!Open(*object, path, before)) return 0;
  Require(object->Decipher(path, directory.At("out"),
                           before.passwords.empty() ? "" : before.passwords[0],
                           nullptr) == kEncryptDone);

  const std::string added = "none of the fuzzer's";
  const bool first = before.passwords.empty();
  const std::string master = first ? added : before.passwords.front();
  for (const std::string& each : before.passwords) {
    if (each == added) return 0;
  }
  const EncryptCode code = object->AddPasswordTo(path, master, added);
  Require(code == (first ? kEncryptNotOpened : kEncryptDone));
  Content after, expected = before;
  expected.passwords.push_back(added);
  Require(Open(*object, path, after) && after == expected);

  const EncryptCode removed = object->RemovePasswordFrom(path, master, added);
  Require(removed == (first ? kEncryptNoPassword : kEncryptDone));
  Require(Open(*object, path, after) && after == (first ? expected : before));
  return 0;
}
