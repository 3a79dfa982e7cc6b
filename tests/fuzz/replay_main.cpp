// Runs a fuzz target over files instead of the fuzzer: every file named, and
// every file of every folder named, once, in name order. This is how the
// seed corpus and every input that ever crashed are replayed by the tests in
// any build, with or without clang.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::vector<fs::path> inputs;
  for (int i = 1; i < argc; ++i) {
    const fs::path named(argv[i]);
    std::error_code error;
    if (fs::is_directory(named, error)) {
      for (const fs::directory_entry& entry : fs::directory_iterator(named)) {
        if (entry.is_regular_file()) inputs.push_back(entry.path());
      }
    } else if (fs::exists(named, error)) {
      inputs.push_back(named);
    }
    // A folder that does not exist yet (no crash was ever kept) has nothing to replay.
  }
  std::sort(inputs.begin(), inputs.end());
  for (const fs::path& path : inputs) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
      std::fprintf(stderr, "cannot read %s\n", path.c_str());
      return 1;
    }
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::fprintf(stderr, "%s\n", path.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  std::fprintf(stderr, "%zu inputs replayed\n", inputs.size());
  return 0;
}
