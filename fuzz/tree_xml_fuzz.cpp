#include "fuzz/tree_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace QvCommonUtils;
  return fuzz::CheckReader(
      data, size, [](std::string_view input, TStringTree* tree) { ReadTreeXml(input, tree); });
}
