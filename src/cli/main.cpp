// cwreport: the headless front end. Subcommands live in their own files.
#include <cstdio>

int main(int, char**) {
  std::fputs("cwreport: nothing to do yet\n", stderr);
  return 1;
}
