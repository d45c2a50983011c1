#include <unistd.h>

#include <iostream>

#include "apps/cli/command_line.h"

// The process keeps the C locale, so that numbers never change their form with the user's
// language; case and order of names go by the user's locale all the same.
int main(int argc, char** argv) {
  // Nothing here writes through the C streams; in step with them, millions of lines take minutes.
  std::ios::sync_with_stdio(false);
  const bool interactive = isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
  return RefframeCli::Run(argc, argv, {std::cin, std::cout, std::cerr, interactive});
}
