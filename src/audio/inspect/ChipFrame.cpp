#include "audio/inspect/ChipFrame.h"

#include <algorithm>
#include <bit>
#include <string>

#include "audio/inspect/FileWindow.h"

namespace velora {

namespace {

constexpr ChipFormat kFormats[] = {
    {.tag = "KMPM",
     .grammar = &kMpmGrammar,
     .channels = 1,
     .formatCode = 5,
     .bits = 12,
     .framesMethod = 4,
     .rawMethod = 5,
     .padValue = 2047},
};

/// How a walk over the whole stream ends with one form of its events.
struct FormTrial {
  bool fits = false;    // the end mark is the stream's last byte
  bool planes = false;  // an action that may have planes was met
};

FormTrial TryForm(const InputFile& file, StreamPlace place, EventForm form) {
  place.form = form;
  StreamWalker walker(file, place);
  StreamCommand command;
  FormTrial trial;
  while (walker.Next(command)) {
    trial.planes = trial.planes || (command.event.present && command.event.action == kPlaneAction);
  }
  trial.fits = walker.Ended() && walker.StreamOffset() == place.size;
  return trial;
}

/// The records of a sound whose events are planes end with an action of their own.
EventForm GuessForm(const InputFile& file, const ChipFrame& chip) {
  if (!chip.eventBlock || chip.eventBlock->count == 0) return EventForm::kWord;
  FileWindow window(file, sizeof(layout::EventRecord));
  const uint64_t last = uint64_t{chip.eventBlock->firstOffset} +
                        sizeof(layout::EventRecord) * (uint64_t{chip.eventBlock->count} - 1);
  const auto record = window.Record<layout::EventRecord>(last);
  return record && record->action == kLastPlaneAction ? EventForm::kPlanes : EventForm::kWord;
}

/// No field says whether plane data follows the event words; the form with which
/// the stream ends at its end mark is right, and the guess where both or none do.
EventForm ChooseForm(const InputFile& file, const ChipFrame& chip, const StreamPlace& place) {
  const FormTrial words = TryForm(file, place, EventForm::kWord);
  if (!words.planes) return EventForm::kWord;
  const FormTrial planes = TryForm(file, place, EventForm::kPlanes);
  if (words.fits != planes.fits) return words.fits ? EventForm::kWord : EventForm::kPlanes;
  return GuessForm(file, chip);
}

}  // namespace

const ChipFormat* FindChipFormat(std::string_view tag) {
  const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                         [&](const ChipFormat& row) { return row.tag == tag; });
  return found == std::end(kFormats) ? nullptr : found;
}

Result<ChipFrame> ReadChipFile(const InputFile& file) {
  FileWindow window(file, sizeof(layout::MpmHeader));
  ChipFrame chip;
  const auto tag = window.Record<layout::FileTag>(0);
  if (tag) chip.format = FindChipFormat(std::string_view(tag->data(), tag->size()));
  if (!window.GetStatus()) return window.GetStatus();
  if (!chip.format) return Status::Error("no chip format whose stream is known");
  const auto header = window.Record<layout::MpmHeader>(0);
  if (!header) {
    return Status::Error("header: expected " + std::to_string(sizeof(layout::MpmHeader)) +
                         " bytes, found " + std::to_string(file.Size()));
  }
  chip.header = *header;
  if (const auto block = window.Record<layout::StreamBlockRecord>(header->streamBlockOffset)) {
    chip.streamBlock = *block;
  }
  chip.eventBlock = window.Record<layout::EventBlockRecord>(header->eventOffset);
  if (chip.eventBlock) {
    chip.silenceOffset = uint64_t{header->eventOffset} + sizeof(layout::EventBlockRecord) +
                         sizeof(layout::EventRecord) * uint64_t{chip.eventBlock->count};
    chip.silenceBlock = window.Record<layout::SilenceBlockRecord>(chip.silenceOffset);
  }
  if (!window.GetStatus()) return window.GetStatus();
  return chip;
}

Result<StreamPlace> FindStream(const InputFile& file, const ChipFrame& chip) {
  StreamPlace place;
  place.grammar = chip.format->grammar;
  place.offset = chip.streamBlock.streamOffset;
  place.size = chip.streamBlock.streamSize;
  if (place.offset >= file.Size()) {
    return Status::Error("stream: expected inside the " + std::to_string(file.Size()) +
                         " bytes of the file, found at " + std::to_string(place.offset));
  }
  place.size = std::min(place.size, file.Size() - place.offset);
  place.form = ChooseForm(file, chip, place);
  return place;
}

uint16_t EventWordOf(const layout::EventRecord& record) {
  return static_cast<uint16_t>(record.action << 8 | std::rotl(record.parameter, 2));
}

}  // namespace velora
