#include "audio/inspect/LogWriter.h"

#include <utility>

#include "audio/inspect/FieldText.h"

namespace velora {

LogEntry* LogWriter::Add(LogEntry entry) {
  // One place is kept for the entry that says what was left out.
  if (log_->entries.size() + 1 >= options_.entryLimit) {
    ++log_->omitted;
    return nullptr;
  }
  log_->entries.push_back(std::move(entry));
  return &log_->entries.back();
}

LogEntry* LogWriter::AddRecord(FileWindow& window, const layout::Layout& layout, uint64_t offset,
                               int depth, std::string name, std::string note) {
  const size_t there = window.Get(offset, layout.size).size();
  if (there < layout.size) {
    if (!note.empty()) note += "; ";
    note += "cut off: expected " + std::to_string(layout.size) + " bytes, found " +
            std::to_string(there);
  }
  const size_t index = log_->entries.size();
  const bool added = Add({offset, there, depth, std::move(name), {}, std::move(note)}) != nullptr;
  AddFields(window, layout, offset, depth + 1);
  return added ? &log_->entries[index] : nullptr;
}

void LogWriter::AddFields(FileWindow& window, const layout::Layout& layout, uint64_t offset,
                          int depth) {
  const std::span<const std::byte> record = window.Get(offset, layout.size);
  for (const layout::LayoutField& field : layout.fields) {
    if (field.offset >= record.size()) break;
    const uint64_t size = std::min<uint64_t>(field.size, record.size() - field.offset);
    Add({offset + field.offset,
         size,
         depth,
         std::string(field.name),
         FieldText(record, field),
         {}});
  }
}

void LogWriter::AddSummary(uint64_t offset, uint64_t recordSize, uint64_t count, int depth,
                           std::string_view plural) {
  const uint64_t shown = Shown(count);
  if (shown == count) return;
  const uint64_t rest = count - shown;
  log_->omitted += rest;
  Add({offset + shown * recordSize,
       rest * recordSize,
       depth,
       std::to_string(rest) + " more " + std::string(plural),
       {},
       "not told one by one"});
}

void LogWriter::Finish() {
  if (log_->entries.size() + 1 < options_.entryLimit || log_->omitted == 0) return;
  LogEntry last;
  last.offset = log_->entries.empty() ? 0 : log_->entries.back().offset;
  last.name = "left out";
  last.value = std::to_string(log_->omitted) + " entries";
  last.note = "the log is full";
  log_->entries.push_back(std::move(last));
}

}  // namespace velora
