// The pen with which the checks write a VerifyReport.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "audio/inspect/Layouts.h"
#include "audio/inspect/Verify.h"

namespace velora {

/// Counts checks and collects faults and warnings. Borrows the report.
class Checker {
 public:
  Checker(VerifyReport& report, const VerifyOptions& options)
      : report_(&report), limit_(options.listLimit) {}

  void Fault(uint64_t offset, std::string_view what, std::string_view expected,
             std::string_view found);
  void Warn(uint64_t offset, std::string_view what, std::string_view expected,
            std::string_view found);

  /// A fault unless the two are equal, which it returns.
  bool Equal(uint64_t offset, std::string_view what, uint64_t expected, uint64_t found);

  /// A fault unless `holds`, which it returns.
  bool Require(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
               std::string_view found);
  bool Require(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
               uint64_t found);

  /// A warning unless `holds`.
  void Prefer(bool holds, uint64_t offset, std::string_view what, std::string_view expected,
              std::string_view found);

  /// Comparisons that the caller made itself and found good.
  void CountChecks(uint64_t checks) { report_->checks += checks; }

  VerifyReport& Report() { return *report_; }

 private:
  VerifyReport* report_;
  size_t limit_;
};

/// Checks of the fields of one record, by the names of its layout table. Borrows
/// everything.
class RecordCheck {
 public:
  /// `what` opens the name of each field in a fault: "header: band limit".
  RecordCheck(Checker& checker, std::string_view what, const layout::Layout& layout,
              std::span<const std::byte> record, uint64_t offset)
      : checker_(&checker), what_(what), layout_(&layout), record_(record), offset_(offset) {}

  /// The field holds this number. `name` must be in the table.
  bool Equal(std::string_view name, uint64_t expected);
  bool Tag(std::string_view name, std::string_view expected);

  /// A fault of the field unless `holds`.
  bool Require(bool holds, std::string_view name, std::string_view expected);
  void Prefer(bool holds, std::string_view name, std::string_view expected);

 private:
  const layout::LayoutField& Field(std::string_view name) const;
  std::string Name(std::string_view name) const;

  Checker* checker_;
  std::string what_;
  const layout::Layout* layout_;
  std::span<const std::byte> record_;
  uint64_t offset_;
};

/// The bytes of a record.
template <typename T>
std::span<const std::byte> BytesOf(const T& record) {
  return std::as_bytes(std::span(&record, 1));
}

}  // namespace velora
