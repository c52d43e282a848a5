#include "audio/inspect/Checker.h"

#include <cassert>

#include "audio/inspect/FieldText.h"

namespace velora {

namespace {

void Add(std::vector<Fault>& list, uint64_t& count, size_t limit, Fault fault) {
  ++count;
  if (list.size() < limit) list.push_back(std::move(fault));
}

}  // namespace

void Checker::Fault(uint64_t offset, std::string_view what, std::string_view expected,
                    std::string_view found) {
  Add(report_->faults, report_->faultCount, limit_,
      {offset, std::string(what), std::string(expected), std::string(found)});
}

void Checker::Warn(uint64_t offset, std::string_view what, std::string_view expected,
                   std::string_view found) {
  Add(report_->warnings, report_->warningCount, limit_,
      {offset, std::string(what), std::string(expected), std::string(found)});
}

bool Checker::Equal(uint64_t offset, std::string_view what, uint64_t expected, uint64_t found) {
  ++report_->checks;
  if (expected == found) return true;
  Fault(offset, what, std::to_string(expected), std::to_string(found));
  return false;
}

bool Checker::Require(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
                      std::string_view found) {
  ++report_->checks;
  if (!holds) Fault(offset, what, expected, found);
  return holds;
}

bool Checker::Require(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
                      uint64_t found) {
  ++report_->checks;
  if (!holds) Fault(offset, what, expected, std::to_string(found));
  return holds;
}

void Checker::Prefer(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
                     std::string_view found) {
  ++report_->checks;
  if (!holds) Warn(offset, what, expected, found);
}

const layout::LayoutField& RecordCheck::Field(std::string_view name) const {
  const layout::LayoutField* const field = FindField(*layout_, name);
  assert(field);
  return field ? *field : layout_->fields.front();
}

std::string RecordCheck::Name(std::string_view name) const {
  return what_ + ": " + std::string(name);
}

bool RecordCheck::Equal(std::string_view name, uint64_t expected) {
  const layout::LayoutField& field = Field(name);
  return checker_->Equal(offset_ + field.offset, Name(name), expected, FieldNumber(record_, field));
}

bool RecordCheck::Tag(std::string_view name, std::string_view expected) {
  const std::string quoted = '"' + std::string(expected) + '"';
  return Require(FieldText(record_, Field(name)) == quoted, name, quoted);
}

bool RecordCheck::Require(bool holds, std::string_view name, std::string_view expected) {
  const layout::LayoutField& field = Field(name);
  return checker_->Require(holds, offset_ + field.offset, Name(name), expected,
                           FieldText(record_, field));
}

void RecordCheck::Prefer(bool holds, std::string_view name, std::string_view expected) {
  const layout::LayoutField& field = Field(name);
  checker_->Prefer(holds, offset_ + field.offset, Name(name), expected, FieldText(record_, field));
}

}  // namespace velora
