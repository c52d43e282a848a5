// What the label of a cue point says.
#pragma once

#include <cstdint>
#include <string_view>

namespace velora {

enum class LabelKind : uint8_t {
  kEvent,    ///< "(type,parameter)" or "[type,parameter]"
  kSilence,  ///< "SILENCE": the region is as long as the cue point's "ltxt" record says
  kPlain,    ///< any other text: makes no event
  kBroken,   ///< opens like an event and is none, or its numbers are none
};

struct LabelMeaning {
  LabelKind kind = LabelKind::kPlain;
  int32_t type = 0;  ///< kEvent
  int32_t parameter = 0;
  bool more = false;  ///< kEvent: text stands outside the brackets, which nothing reads
};

LabelMeaning ReadLabelMeaning(std::string_view text);

}  // namespace velora
