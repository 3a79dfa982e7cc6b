// cwreport over logs with bad records: the document is written as the
// desktop would show it, each error is told once on standard error, and the
// exit status 3 says the report finished with errors.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

using RecordsWithErrors = ReportTest;

// 25 calls like `bad`, then a good one.
std::string RepeatedFault(const Call& bad) {
  std::vector<Call> calls(25, bad);
  calls.push_back(Call().Date("01/06/2026").Line("1"));
  return LogOf(calls);
}

// What each report tells is in the transcript; here, that the documents
// were written.
TEST_F(RecordsWithErrors, ErrorsAreToldOnceAndTheDocumentIsWritten) {
  UseLog("");  // for its settings: each request names its own log
  Write("line-zero.log", RepeatedFault(Call().Date("01/05/2026").Line("0")));
  Write("bad-time.log", RepeatedFault(Call().Date("01/05/2026").Time("25:00")));
  Write("rolled.log", LogOf({Call().Date("10/30/2026").Name("FIRST"), Call().Date("10/32/2026").Name("ROLLED"),
                             Call().Date("10/31/2026").Name("AFTER")}));
  Write("lines.log", LogOf({Call().Date("01/05/2026").Line("1"), Call().Date("01/05/2026").Line("3"),
                            Call().Date("01/05/2026").Line("4")}));
  ExpectTranscript("records-with-errors.txt", "CW_SETTINGS=settings.ini");
  // Which records each counts is the core report tests' (RepeatedErrors, RolledDates).
  for (const char* name : {"line-zero.txt", "bad-time.txt", "rolled.txt", "lines.txt"}) {
    EXPECT_THAT(ReadFile(Path(name)), HasSubstr("Total")) << name;
  }
}

}  // namespace
}  // namespace cw::testing
