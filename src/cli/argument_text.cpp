#include "cli/argument_text.h"

#include <iconv.h>
#include <langinfo.h>

#include <algorithm>
#include <optional>

#include "cli/option_table.h"
#include "support/ansi_text.h"
#include "support/text.h"

namespace cw::cli {

namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The locale's code set as nl_langinfo names it, upper case; "UTF-8" and the
// C locale's "ANSI_X3.4-1968" are the usual ones.
std::string CodeSet() { return UpperCase(nl_langinfo(CODESET)); }

bool PassesUtf8(const std::string& codeSet) {
  return codeSet == "UTF-8" || codeSet == "UTF8" || codeSet == "ANSI_X3.4-1968" || codeSet == "ASCII" ||
         codeSet == "US-ASCII";
}

// UTF-8 of text in another code set; nullopt when it does not convert.
std::optional<std::string> ToUtf8(const std::string& codeSet, std::string_view text) {
  iconv_t converter = iconv_open("UTF-8", codeSet.c_str());
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string in(text);
  std::string out(text.size() * 4 + 4, '\0');
  char* inPointer = in.data();
  std::size_t inLeft = in.size();
  char* outPointer = out.data();
  std::size_t outLeft = out.size();
  const std::size_t result = iconv(converter, &inPointer, &inLeft, &outPointer, &outLeft);
  iconv_close(converter);
  if (result == static_cast<std::size_t>(-1) || inLeft != 0) return std::nullopt;
  out.resize(out.size() - outLeft);
  return out;
}

}  // namespace

std::string ArgumentToWin1252(std::string_view option, std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  const std::string codeSet = CodeSet();
  std::string utf8(text);
  if (!PassesUtf8(codeSet)) {
    const std::optional<std::string> converted = ToUtf8(codeSet, text);
    if (!converted) {
      throw UsageError{std::string(option) + " \"" + std::string(text) + "\" is not text of the locale's code set " +
                       codeSet};
    }
    utf8 = *converted;
  } else if (!IsValidUtf8(text)) {
    // Not UTF-8: bytes typed as the log holds them.
    return std::string(text);
  }
  std::string unmappable;
  if (std::optional<std::string> bytes = Utf8ToWin1252Exactly(utf8, &unmappable)) return *bytes;
  throw UsageError{std::string(option) + " holds \"" + unmappable +
                   "\", which the call log cannot hold: it keeps Windows-1252 characters only"};
}

}  // namespace cw::cli
