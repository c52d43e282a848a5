#include "audio/wavedata/SilenceSegment.h"

#include <new>

namespace velora {

void C_SilenceSegmentList::Append(uint32_t start, uint32_t end) {
  if (auto* segment = new (std::nothrow) C_SilenceSegment(start, end)) Add(segment);
}

void C_SilenceSegmentList::AppendCopies(I_CUList<I_SilenceSegment>& segments) {
  const int32_t count = segments.GetCount();  // of the start: the list may be this one
  for (int32_t i = 0; i < count; ++i) {
    const I_SilenceSegment* segment = segments.GetAt(i);
    Append(segment->GetStart(), segment->GetEnd());
  }
}

}  // namespace velora
