// The constants of enciphered files, in one place: to change one of them is to
// change the file formats.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/PC1Cipher.h"

namespace velora {

/// What a key text is laid over.
inline constexpr PC1Cipher::Key kKeyMask = {0xB3, 0x1F, 0x6C, 0x92, 0x47, 0xE8, 0x05, 0xDA,
                                            0x7B, 0xC4, 0x39, 0xAE, 0x50, 0x8D, 0x26, 0xF1};

/// Lies over the complement of a count or length. Its high byte is below 0x80, so
/// that a file of plain ASCII text, read as the older form of an enciphered file,
/// claims more than 32,767 passwords of more than 32 bytes and is seen as none.
inline constexpr uint16_t kLengthMask = 0x5AC3;

/// Enciphers buffers, headers and password lists, and the data of files without
/// passwords.
inline constexpr std::string_view kDefaultKeyText = "TaLkInGrIvErS";

/// The password by which the module opens its own enciphered data files.
inline constexpr std::string_view kDataFilePassKey = "QZK40372";

/// The cipher's key for a key text of any length. Only the exclusive or of the
/// text's bytes goes into it: there are 256 keys.
constexpr PC1Cipher::Key PrepareKey(std::string_view text) {
  uint8_t sum = 0;
  for (const char c : text) sum ^= static_cast<uint8_t>(c);
  PC1Cipher::Key key = kKeyMask;
  for (uint8_t& byte : key) byte ^= sum;
  return key;
}

/// A count or length as files store it, and back: the same step both ways.
constexpr uint16_t MaskLength(uint16_t length) {
  return static_cast<uint16_t>(~length ^ kLengthMask);
}

static_assert((kLengthMask & 0x8000) == 0, "plain text would pass for an enciphered file");

}  // namespace velora
