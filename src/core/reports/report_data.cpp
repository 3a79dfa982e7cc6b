#include "reports/report_data.h"

#include <cstring>

#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/temporary_files.h"

namespace cw {

namespace {

// A row in the scratch file: its number of cells, then each cell as its
// length and its bytes; numbers as 32 bits in the machine's order (the file
// never leaves this process).
void Put32(std::string& block, std::uint32_t value) {
  char bytes[4];
  std::memcpy(bytes, &value, 4);
  block.append(bytes, 4);
}

[[noreturn]] void ScratchFailed(const std::string& path, std::string_view what) {
  throw RuntimeError(err::kPathFileAccess, "Cannot " + std::string(what) + " the report's data file " + path);
}

}  // namespace

std::string DataDate(CivilDate date) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.Year(), date.Month(), date.Day());
  return text;
}

std::string DataTime(TimeOfDay time) {
  char text[8];
  std::snprintf(text, sizeof text, "%02d:%02d", time / 3600 % 24, time / 60 % 60);
  return text;
}

ReportData::ReportData(bool keep) : keep_(keep) {}

ReportData::~ReportData() { CloseScratch(); }

void ReportData::CloseScratch() noexcept {
  if (scratch_ != nullptr) std::fclose(scratch_);
  scratch_ = nullptr;
  if (!scratchPath_.empty()) {
    std::remove(scratchPath_.c_str());
    ForgetTemporaryFile(scratchPath_);
  }
  scratchPath_.clear();
}

void ReportData::OpenScratch() {
  CloseScratch();
  {
    CleanupSignalsHeld held;
    scratchPath_ = GetTempFile("VPD");
    if (!scratchPath_.empty()) RegisterTemporaryFile(scratchPath_);
  }
  if (scratchPath_.empty()) throw RuntimeError(err::kPathFileAccess, "Cannot make the report's data file");
  scratch_ = std::fopen(scratchPath_.c_str(), "w+b");
  if (scratch_ == nullptr) ScratchFailed(scratchPath_, "open");
}

void ReportData::Begin(std::vector<std::string> columns) {
  columns_ = std::move(columns);
  rows_ = 0;
  if (keep_) OpenScratch();
}

std::size_t ReportData::ColumnIndex(std::string_view name) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i] == name) return i;
  }
  throw RuntimeError(err::kInvalidCall, "The report's data has no column " + std::string(name));
}

void ReportData::AddRow(std::span<const std::string> cells) {
  if (!keep_) return;
  if (scratch_ == nullptr) throw RuntimeError(err::kInvalidCall, "A row of report data before its header");
  std::string block;
  const std::size_t count = cells.size() < columns_.size() ? cells.size() : columns_.size();
  Put32(block, static_cast<std::uint32_t>(count));
  for (std::size_t i = 0; i < count; ++i) {
    Put32(block, static_cast<std::uint32_t>(cells[i].size()));
    block += cells[i];
  }
  if (std::fwrite(block.data(), 1, block.size(), scratch_) != block.size()) ScratchFailed(scratchPath_, "write");
  ++rows_;
}

void ReportData::ForEachRow(const std::function<void(std::span<const std::string> cells)>& visit) const {
  if (scratch_ == nullptr) return;
  if (std::fflush(scratch_) != 0 || std::fseek(scratch_, 0, SEEK_SET) != 0) ScratchFailed(scratchPath_, "read");
  auto get32 = [this] {
    std::uint32_t value = 0;
    if (std::fread(&value, 1, 4, scratch_) != 4) ScratchFailed(scratchPath_, "read");
    return value;
  };
  std::vector<std::string> cells(columns_.size());
  for (std::int64_t row = 0; row < rows_; ++row) {
    const std::uint32_t count = get32();
    if (count > columns_.size()) ScratchFailed(scratchPath_, "read");
    for (std::string& cell : cells) cell.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
      cells[i].resize(get32());
      if (!cells[i].empty() && std::fread(cells[i].data(), 1, cells[i].size(), scratch_) != cells[i].size()) {
        ScratchFailed(scratchPath_, "read");
      }
    }
    visit(cells);
  }
  // Rows added after a reading go at the end.
  if (std::fseek(scratch_, 0, SEEK_END) != 0) ScratchFailed(scratchPath_, "read");
}

}  // namespace cw
