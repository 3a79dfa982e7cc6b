#pragma once
// The CSV of a report's data: one header row, then the rows as the report
// wrote them. RFC 4180: fields that hold the separator, a double quote, CR
// or LF are quoted, with their quotes doubled; every row ends in CR LF. The
// text is UTF-8: the cells are Windows-1252, as the log holds them, and are
// converted on the way out.

#include <string>
#include <string_view>

#include "printer/output_file.h"
#include "reports/report_data.h"

namespace cw {

// The separator when none is chosen; locales whose decimal mark is the
// comma take ';'.
inline constexpr char kCsvComma = ',';

// Whether a file name asks for the CSV: it ends in ".csv", in any case.
bool IsCsvFileName(std::string_view name);

// One field as it goes into the file: UTF-8, quoted when it must be.
std::string CsvField(std::string_view win1252, char separator);

// Writes the whole CSV to output, in blocks; does not commit it. Error 5
// for a separator that cannot separate (a quote, CR or LF).
void WriteCsv(const ReportData& data, OutputFile& output, char separator = kCsvComma);

// The CSV written to a file that appears under its name only when complete.
// Errors 75/76 as for AtomicOutputFile; the target is then left as it was.
void WriteCsvFile(const ReportData& data, const std::string& path, char separator = kCsvComma);

}  // namespace cw
