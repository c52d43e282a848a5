// Which kinds of resource files a chip takes.
#pragma once

#include <cstdint>
#include <string_view>

namespace velora {

class C_CUStringList;
class I_ChipInfo;

/// Adds to `out` the extensions, each with its dot, of the resource files that the
/// chip takes, in the order of the chip's lists; one that stands there already is
/// not added again. True when `out` is not empty afterwards.
///
/// A few old families have lists of their own. For the others the chip's resource
/// lists count: those of its set `index`, or of the chip as a whole for an index
/// below 0. `chip` may be null; the chip is then looked up by its name in the
/// catalogue, which is for one thread at a time. A chip that is not found adds
/// nothing.
///
/// `filter`:
///   0             everything
///   1 to 255      the extension of that format id
///   kKindAudio, kKindMusic, kKindImage
///                 the chip's list of that kind
///   FormatGroup   only the sounds of these groups
/// The values add up. A list of sounds that holds format 2 (.WAV) holds its other
/// extensions too.
///
/// For the old families a FormatGroup brings the source formats along, an id counts
/// only alone and where the family knows it, and so do kKindAudio and kKindMusic.
bool GetExtensionList(std::string_view chipName, uint32_t filter, C_CUStringList& out,
                      I_ChipInfo* chip, int32_t index);

}  // namespace velora
