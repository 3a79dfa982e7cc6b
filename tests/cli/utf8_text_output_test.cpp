#include "cli/utf8_text_output.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cw::cli {
namespace {

class Collected final : public OutputFile {
 public:
  void Write(std::string_view bytes) override { text += bytes; }
  void Commit() override { committed = true; }
  std::string text;
  bool committed = false;
};

// The export writes in blocks, so a CR LF may be split between two writes; a
// CR that is not part of a line end stays.
TEST(Utf8TextOutput, LineEndsBecomeLfAndTextBecomesUtf8WhereverTheWritesSplit) {
  struct Case {
    std::vector<std::string> writes;
    std::string expected;
  };
  const Case cases[] = {
      {{"M\xDCLLER\r\n", "caf\xE9\r\n"}, "M\xC3\x9CLLER\ncaf\xC3\xA9\n"},
      {{"one\r", "\ntwo\r", "\n"}, "one\ntwo\n"},
      {{"\r", "\r\n"}, "\r\n"},
      {{"lone\rcarriage\r"}, "lone\rcarriage\r"},
      {{"\x0C\r\n", "\x80"}, "\x0C\n\xE2\x82\xAC"},
  };
  for (const Case& c : cases) {
    Collected collected;
    Utf8TextOutput output(collected);
    for (const std::string& piece : c.writes) output.Write(piece);
    output.Commit();
    EXPECT_EQ(collected.text, c.expected) << c.writes.front();
    EXPECT_TRUE(collected.committed);
  }
}

}  // namespace
}  // namespace cw::cli
