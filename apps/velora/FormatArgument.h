// FORMAT on the command line, and what the program knows of formats.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Status.h"

namespace velora::cli {

struct FormatChoice {
  uint32_t id = 0;
  std::string extension;  ///< for names of outputs, with its dot
};

/// FORMAT is an extension without its dot, else a short name that one writable
/// format alone has, else "id:N". The extension of outputs is spelled as FORMAT is,
/// and as in the table for the other two. An error for everything else and for a
/// format that cannot be written; for an ambiguous name it lists the choices.
Result<FormatChoice> ParseFormat(const std::string& text);

/// By the extension of an output's name.
Result<FormatChoice> FormatOfName(const std::string& path);

/// Every FORMAT that is an extension of a writable format, with blanks between.
std::string FormatWords();

/// True for a name with an extension of a sound format that can be read.
bool IsReadableSoundName(std::string_view name);

/// ".WAV" of "a/b.WAV"; empty without one. A name that is all extension has none.
std::string_view ExtensionOf(std::string_view path);

/// The name of an id, "format 77" when the table has none.
std::string FormatName(uint32_t id);

}  // namespace velora::cli
