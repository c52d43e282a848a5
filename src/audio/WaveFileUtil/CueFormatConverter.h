// Label forms of other programs, taught by a file beside the module.
//
// CueFormatRegex.ini lists pairs of an expression and what a match of it becomes:
//
//   [Regex]
//   ExpList = {[Marker], [Beat]}
//   [Marker]
//   Regex = M([0-9]+)=([0-9]+)
//   Repl  = ($1,$2)
//   [Beat]
//   ...
//
// Expressions are in the ECMAScript grammar, replacements in its notation. Pairs whose
// expression is not well formed are left out, with a line in the log.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "audio/WaveFileUtil/WaveLabels.h"
#include "platform/Path.h"

namespace velora {

/// The pairs of one file, in its order; read-only once loaded.
class CueFormatTable;

/// Reads the pairs of a file; null when there is no such file or it lists none.
std::shared_ptr<const CueFormatTable> LoadCueFormats(const Path& path);

/// The pairs of the file beside the module, read once in a process; null for none.
std::shared_ptr<const CueFormatTable> GetModuleCueFormats();

/// Converts labels by a table. The pair that matched last is tried first, so that a
/// file whose labels are all of one form is read by one expression; what is remembered
/// belongs to this object.
class C_CueFormatConverter final : public LabelConverter {
 public:
  explicit C_CueFormatConverter(std::shared_ptr<const CueFormatTable> table);

  /// One string for each match of the first pair that matches at all.
  bool Convert(std::string_view text, std::vector<std::string>& strings) override;

 private:
  std::shared_ptr<const CueFormatTable> table_;
  size_t last_;  ///< index of the pair that matched last; one past the end for none
};

}  // namespace velora
