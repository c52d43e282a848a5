#include "foundation/EncryptPC1.h"

#include <algorithm>

#include "foundation/EncryptKeys.h"
#include "foundation/EncryptPaths.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

constexpr std::string_view kDecipheredExtension = ".kmd";

Path SystemPath(const char* path) { return Path::System(path ? path : ""); }

C_EncryptPC1::OptionalKey KeyOf(const char* key) {
  return key ? C_EncryptPC1::OptionalKey(key) : std::nullopt;
}

/// Creates or replaces `target` by what `fill` writes, as a whole or not at all.
template <typename Fill>
EncryptCode ReplaceFile(const Path& target, const SaveOptions& options, EncryptCode writeFailure,
                        const Fill& fill) {
  EncryptCode code = writeFailure;
  const auto write = [&](const Path& temporary) {
    Result<OutputFile> file = OutputFile::Create(temporary);
    if (!file) return file.GetStatus();
    code = fill(file.Value());
    const Status closed = file->Close();
    return code == kEncryptDone ? closed : Status::Error("not written");
  };
  const Status saved = SaveAtomically(target, write, options);
  if (saved) return kEncryptDone;
  return code == kEncryptNotOpened ? code : writeFailure;
}

}  // namespace

// Buffers.

void C_EncryptPC1::EncipherBuffer(const void* in, void* out, uint32_t size) {
  PC1Cipher cipher(PrepareKey(kDefaultKeyText));
  cipher.Encipher({static_cast<const std::byte*>(in), size}, static_cast<std::byte*>(out));
}

void C_EncryptPC1::DecipherBuffer(const void* in, void* out, uint32_t size) {
  PC1Cipher cipher(PrepareKey(kDefaultKeyText));
  cipher.Decipher({static_cast<const std::byte*>(in), size}, static_cast<std::byte*>(out));
}

// The header.

bool C_EncryptPC1::ReadHeader(EncryptReader& file) {
  passwords_.clear();
  currentPath_.clear();
  fileSize_ = 0;
  le16 count;
  if (!file.ReadRecord(count)) return false;
  for (uint32_t left = MaskLength(count); left > 0; --left) {
    if (!ReadEntry(file, passwords_.emplace_back())) return false;
  }
  fileSize_ = static_cast<uint32_t>(file.Remaining());
  return true;
}

bool C_EncryptPC1::ReadEntry(EncryptReader& file, std::string& entry) {
  le16 length;
  if (!file.ReadRecord(length)) return false;
  const uint16_t size = MaskLength(length);
  if (size > kMaxPasswordLength || size > file.Remaining()) return false;
  entry.resize(size);
  if (!file.Read(std::as_writable_bytes(std::span(entry)))) return false;
  DecipherBuffer(entry.data(), entry.data(), size);
  return true;
}

Status C_EncryptPC1::WriteHeader(OutputFile& file) { return WriteList(file); }

Status C_EncryptPC1::WriteList(OutputFile& file) {
  if (Status status = WriteCount(file, passwords_.size()); !status) return status;
  for (const std::string& password : passwords_) {
    if (Status status = WriteEntry(file, password); !status) return status;
  }
  return {};
}

Status C_EncryptPC1::WriteCount(OutputFile& file, size_t count) {
  const le16 word = MaskLength(static_cast<uint16_t>(count));
  return file.Write(std::as_bytes(std::span(&word, 1)));
}

Status C_EncryptPC1::WriteEntry(OutputFile& file, std::string_view entry) {
  // A length past the word's range must not read back as a short one.
  const le16 word = MaskLength(static_cast<uint16_t>(std::min<size_t>(entry.size(), UINT16_MAX)));
  if (Status status = file.Write(std::as_bytes(std::span(&word, 1))); !status) return status;
  return WriteEnciphered(file, entry);
}

Status C_EncryptPC1::WriteEnciphered(OutputFile& file, std::string_view text) {
  std::vector<std::byte> bytes(text.size());
  EncipherBuffer(text.data(), bytes.data(), static_cast<uint32_t>(text.size()));
  return file.Write(bytes);
}

Path C_EncryptPC1::GetDefaultOutputPath(const Path& source, const std::optional<Path>& target) {
  if (target) return *target;
  return WithExtension(source, kDecipheredExtension);
}

bool C_EncryptPC1::Holds(std::string_view password) const {
  return std::find(passwords_.begin(), passwords_.end(), password) != passwords_.end();
}

EncryptCode C_EncryptPC1::ChooseDataKey(OptionalKey key, PC1Cipher::Key& dataKey) const {
  if (passwords_.empty()) {
    dataKey = PrepareKey(kDefaultKeyText);
    return kEncryptDone;
  }
  if (!key || !Holds(*key)) return kEncryptWrongKey;
  dataKey = PrepareKey(passwords_.front());
  return kEncryptDone;
}

// Password lists.

EncryptCode C_EncryptPC1::ReadPasswords(const Path& path, std::vector<std::string>& passwords) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return kEncryptNotOpened;
  EncryptReader reader(file.Value());
  if (!ReadHeader(reader)) return kEncryptNoHeader;
  passwords = passwords_;
  return kEncryptDone;
}

EncryptCode C_EncryptPC1::ReadPasswordInfo(const Path& path, std::vector<std::string>& passwords) {
  return ReadPasswords(path, passwords);
}

int32_t C_EncryptPC1::GetPasswordInfo(const char* path, int32_t* count, int32_t* bytes) {
  std::vector<std::string> passwords;
  const EncryptCode code = ReadPasswordInfo(SystemPath(path), passwords);
  if (code != kEncryptDone) return code == kEncryptNoHeader ? 0 : 1;
  size_t needed = 2;
  for (const std::string& password : passwords) needed += password.size() + 1;
  if (count) *count = static_cast<int32_t>(passwords.size());
  if (bytes) *bytes = static_cast<int32_t>(needed);
  return 1;
}

int32_t C_EncryptPC1::GetPasswords(const char* path, char* buffer) {
  std::vector<std::string> passwords;
  const EncryptCode code = ReadPasswords(SystemPath(path), passwords);
  if (code != kEncryptDone || !buffer) return code;
  for (const std::string& password : passwords) {
    buffer = std::copy_n(password.c_str(), password.size() + 1, buffer);
  }
  *buffer = 0;
  return kEncryptDone;
}

EncryptCode C_EncryptPC1::AddPasswordTo(const Path& path, OptionalKey key,
                                        std::string_view password) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return kEncryptNotOpened;
  EncryptReader reader(file.Value());
  if (!ReadHeader(reader)) return kEncryptNoHeader;

  const bool fits = password.size() <= kMaxPasswordLength && passwords_.size() < kMaxPasswords;
  DataSteps steps;
  EncryptCode done = kEncryptDone;
  if (passwords_.empty()) {
    steps.decipher.emplace(PrepareKey(kDefaultKeyText));
    steps.encipher.emplace(PrepareKey(password));
    done = kEncryptNotOpened;  // what callers are used to for this case
  } else {
    if (!key || *key != passwords_.front()) return kEncryptWrongKey;
    if (Holds(password)) return kEncryptNotOpened;
  }
  if (!fits) return kEncryptWrongKey;
  passwords_.emplace_back(password);
  const EncryptCode written =
      WriteFile(path, file.Value(), reader.Position(), steps, kEncryptNoTemporary, nullptr);
  return written == kEncryptDone ? done : written;
}

EncryptCode C_EncryptPC1::RemovePasswordFrom(const Path& path, OptionalKey key,
                                             std::string_view password) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return kEncryptNotOpened;
  EncryptReader reader(file.Value());
  if (!ReadHeader(reader)) return kEncryptNoHeader;

  if (passwords_.empty()) return kEncryptDone;
  if (!key || *key != passwords_.front()) return kEncryptWrongKey;
  const auto found = std::find(passwords_.begin() + 1, passwords_.end(), password);
  if (found == passwords_.end()) return kEncryptNoPassword;
  passwords_.erase(found);
  return WriteFile(path, file.Value(), reader.Position(), {}, kEncryptNoTemporary, nullptr);
}

int32_t C_EncryptPC1::AddPassword(const char* path, const char* key, const char* password) {
  if (!password) return kEncryptWrongKey;
  return AddPasswordTo(SystemPath(path), KeyOf(key), password);
}

int32_t C_EncryptPC1::RemovePassword(const char* path, const char* key, const char* password) {
  if (!password) return kEncryptNoPassword;
  return RemovePasswordFrom(SystemPath(path), KeyOf(key), password);
}

// Files.

EncryptCode C_EncryptPC1::WriteFile(const Path& target, const InputFile& source, uint64_t start,
                                    const DataSteps& steps, EncryptCode writeFailure,
                                    I_ProgressCallback* progress) {
  return ReplaceFile(target, {}, writeFailure, [&](OutputFile& file) {
    if (!WriteHeader(file)) return writeFailure;
    return CopyData(source, start, steps, file, progress);
  });
}

EncryptCode C_EncryptPC1::Encipher(const Path& source, const Path& target, OptionalKey key,
                                   I_ProgressCallback* progress) {
  const Result<InputFile> file = InputFile::Open(source);
  if (!file) return kEncryptNotOpened;
  if (target.Empty() || IsSameFile(source, target)) return kEncryptNoTarget;
  currentPath_ = source.Text();
  passwords_.clear();
  if (key) passwords_.emplace_back(*key);
  fileSize_ = static_cast<uint32_t>(file->Size());

  DataSteps steps;
  steps.encipher.emplace(PrepareKey(key.value_or(kDefaultKeyText)));
  return WriteFile(target, file.Value(), 0, steps, kEncryptNoTarget, progress);
}

EncryptCode C_EncryptPC1::Decipher(const Path& source, const std::optional<Path>& target,
                                   OptionalKey key, I_ProgressCallback* progress) {
  const Result<InputFile> file = InputFile::Open(source);
  if (!file) return kEncryptNotOpened;
  EncryptReader reader(file.Value());
  if (!ReadHeader(reader)) return kEncryptNoHeader;
  const Path output = GetDefaultOutputPath(source, target);
  PC1Cipher::Key dataKey;
  if (const EncryptCode code = ChooseDataKey(key, dataKey); code != kEncryptDone) return code;
  if (output.Empty() || IsSameFile(source, output)) return kEncryptNoTarget;

  DataSteps steps;
  steps.decipher.emplace(dataKey);
  // The enciphered file stays, so no loss of power can lose anything.
  SaveOptions options;
  options.flush = false;
  return ReplaceFile(output, options, kEncryptNoTarget, [&](OutputFile& out) {
    return CopyData(file.Value(), reader.Position(), steps, out, progress);
  });
}

EncryptCode C_EncryptPC1::DecipherToMemory(const Path& /*source*/, const InputFile& file,
                                           OptionalKey key, std::vector<std::byte>& plain) {
  EncryptReader reader(file);
  if (!ReadHeader(reader)) return kEncryptNoHeader;
  PC1Cipher::Key dataKey;
  if (const EncryptCode code = ChooseDataKey(key, dataKey); code != kEncryptDone) return code;
  std::vector<std::byte> data(static_cast<size_t>(reader.Remaining()));
  if (!file.ReadExactly(reader.Position(), data)) return kEncryptNotOpened;
  PC1Cipher(dataKey).Decipher(data, data.data());
  plain = std::move(data);
  return kEncryptDone;
}

int32_t C_EncryptPC1::EncipherFile(const char* source, const char* target, const char* key,
                                   I_ProgressCallback* progress) {
  return Encipher(SystemPath(source), SystemPath(target), KeyOf(key), progress);
}

int32_t C_EncryptPC1::DecipherFile(const char* source, const char* target, const char* key,
                                   I_ProgressCallback* progress) {
  const std::optional<Path> given = target ? std::optional(Path::System(target)) : std::nullopt;
  return Decipher(SystemPath(source), given, KeyOf(key), progress);
}

}  // namespace velora
