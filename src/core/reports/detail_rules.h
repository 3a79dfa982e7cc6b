#pragma once
// The rules of the call detail listings that work on values alone: the
// abandoned-call test, the figures of the totals block, and the title of the
// line listing.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/call_record.h"
#include "reports/report_request.h"

namespace cw {

// A total duration as h:mm:ss. The hours have no upper bound: a month of
// calls easily runs past a hundred hours ("123:04:05"); 0 gives "0:00:00".
std::string TotalDurationText(std::int64_t seconds);

// Abandoned calls as a share of the calls considered, in whole percent,
// halves to even (1 of 8 is 12.5 % and prints 12); 0 when either count is
// below 1. Error 6 when abandoned * 100 does not fit in 32 bits.
std::int32_t AbandonedPercentage(std::int32_t abandoned, std::int32_t considered);

// The figures after "Total Abandoned Calls:  ": "12 of 40  (30%)".
std::string AbandonedSummaryText(std::int32_t abandoned, std::int32_t considered);

// The abandoned-call filter of the abandoned tab, applied to a call that has
// already passed the period and direction tests.
class AbandonedCallTest {
 public:
  // Reads the thresholds of the checked boxes once. The answered and ring
  // tests belong to inbound calls only: they apply when the direction chosen
  // is "In", and with "Out" or "InOut" only the duration test filters. A
  // threshold that is not a whole number is error 13 (the request refuses
  // such texts before a report starts), one too large error 6.
  AbandonedCallTest(const AbandonedFilter& filter, std::string_view direction);

  // Whether the call counts as abandoned. A ring count that is not a number
  // is error 13. The duration is read as its minutes and seconds only (the
  // five characters from column 90), as the logging product's own abandoned
  // filter has always read it.
  bool IsAbandoned(const CallRecord& record) const;

 private:
  bool unansweredOnly_ = false;
  bool ringLimit_ = false;
  std::int32_t maxRings_ = 0;
  bool notLasting_ = false;
  std::int32_t lastingSeconds_ = 0;
};

// Title of the line listing: "LINE DETAILS REPORT (Line 3)" for one line;
// for several, "(Lines 1-4)" with runs of consecutive lines written as a
// range and the rest separated by commas ("(Lines 1,3-5,8)"), in the order
// chosen. Empty lines gives the bare "LINE DETAILS REPORT".
std::string LineListingTitle(const std::vector<std::int16_t>& lines);

}  // namespace cw
