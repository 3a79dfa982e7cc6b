#pragma once
// CDR rows for the import tests, written as the PBXs write them.

#include <string>
#include <vector>

namespace cw::testing {

// One Asterisk cdr_csv row; every field quoted but the numbers, as
// cdr_csv writes them.
struct AsteriskRow {
  std::string src = "5551234567";
  std::string dst = "201";
  std::string dcontext = "from-trunk";
  std::string clid = "\"Smith John\" <5551234567>";
  std::string channel = "SIP/telco-00000001";
  std::string dstchannel = "SIP/201-00000002";
  std::string lastapp = "Dial";
  std::string lastdata = "SIP/201,30";
  std::string start = "2026-08-17 09:05:00";
  std::string answer = "2026-08-17 09:05:14";
  std::string end = "2026-08-17 09:06:16";
  std::string duration = "76";
  std::string billsec = "62";
  std::string disposition = "ANSWERED";
  std::string uniqueid = "1787000000.1";
  std::string linkedid = "1787000000.1";
  int columns = 21;

  std::string Text() const {
    auto q = [](const std::string& text) {
      std::string quoted = "\"";
      for (char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
      }
      return quoted + "\"";
    };
    std::string row = q("") + "," + q(src) + "," + q(dst) + "," + q(dcontext) + "," + q(clid) + "," + q(channel) +
                      "," + q(dstchannel) + "," + q(lastapp) + "," + q(lastdata) + "," + q(start) + "," +
                      q(answer) + "," + q(end) + "," + duration + "," + billsec + "," + q(disposition) + "," +
                      q("DOCUMENTATION");
    if (columns >= 17) row += "," + q(uniqueid);
    if (columns >= 18) row += "," + q("");
    if (columns >= 21) row += "," + q("") + "," + q(linkedid) + "," + "7";
    return row + "\n";
  }
};

}  // namespace cw::testing
