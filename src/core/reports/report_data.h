#pragma once
// The report's data beside its pages: the rows a report routine writes
// (listing rows, table rows, totals rows) as plain cells, for the CSV. The
// page and the data are written by the same code from the same figures, so
// the two cannot disagree.
//
// Rows go to a scratch file as they come, so a listing of the whole log
// costs no memory. A report that nobody asked for its data keeps nothing,
// and every call is then a test of one flag.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/civil_date.h"

namespace cw {

// A date as the data writes it, yyyy-mm-dd; a time of day as 24-hour hh:mm.
std::string DataDate(CivilDate date);
std::string DataTime(TimeOfDay time);

class ReportData {
 public:
  // keep: rows are written to a scratch file in the temporary folder.
  explicit ReportData(bool keep = false);
  ~ReportData();
  ReportData(const ReportData&) = delete;
  ReportData& operator=(const ReportData&) = delete;

  bool Keeping() const { return keep_; }

  // The header of the data; rows added before are dropped (a report starts
  // its data afresh, as it starts its document).
  void Begin(std::vector<std::string> columns);
  const std::vector<std::string>& Columns() const { return columns_; }
  // The index of a column of the header; error 5 for a name it lacks.
  std::size_t ColumnIndex(std::string_view name) const;

  // One row, its cells in the order of the header (fewer cells leave the
  // rest empty). Cells are Windows-1252, as the log holds them. Error 75
  // when the scratch file cannot be written.
  void AddRow(std::span<const std::string> cells);
  std::int64_t RowCount() const { return rows_; }

  // Every row in the order added. Error 75 when the scratch file cannot be
  // read back.
  void ForEachRow(const std::function<void(std::span<const std::string> cells)>& visit) const;

 private:
  void OpenScratch();
  void CloseScratch() noexcept;

  bool keep_ = false;
  std::vector<std::string> columns_;
  std::string scratchPath_;
  std::FILE* scratch_ = nullptr;
  std::int64_t rows_ = 0;
};

// A row of a table whose cells are set by column name: the analyses write
// tables of different shapes under one header, each filling its own columns.
class DataRow {
 public:
  explicit DataRow(const ReportData& data) : data_(data), cells_(data.Columns().size()) {}
  DataRow& Set(std::string_view column, std::string value) {
    cells_[data_.ColumnIndex(column)] = std::move(value);
    return *this;
  }
  const std::vector<std::string>& Cells() const { return cells_; }

 private:
  const ReportData& data_;
  std::vector<std::string> cells_;
};

// The analyses' first three columns: the table a row belongs to, whether it
// is one of the table's rows or its totals, and the row's label.
inline constexpr std::string_view kTableColumn = "Table";
inline constexpr std::string_view kKindColumn = "Kind";
inline constexpr std::string_view kRowColumn = "Row";
inline constexpr std::string_view kDataRow = "row";
inline constexpr std::string_view kTotalsRow = "total";

}  // namespace cw
