#include "platform/ui/texts.h"

#include <gtest/gtest.h>

namespace {

using namespace QvPlatform;

TEST(Texts, GoThroughTheTranslatorAndBack) {
  SetTextTranslator([](std::string_view source) { return "<" + std::string(source) + ">"; });
  EXPECT_EQ(SystemText(TextId::kSelect), "<Select>");
  EXPECT_EQ(SourceText(TextId::kSelect), "Select");
  SetTextTranslator({});
  EXPECT_EQ(SystemText(TextId::kSelect), "Select");
}

TEST(Texts, OfUnknownNumbersAreEmpty) {
  int asked = 0;
  SetTextTranslator([&asked](std::string_view source) {
    ++asked;
    return std::string(source);
  });
  for (const int number : {0, 36768, 36787, 36813, 100000, 100999})
    EXPECT_EQ(SystemText(static_cast<TextId>(number)), "") << number;
  SetTextTranslator({});
  EXPECT_EQ(asked, 0);
}

}  // namespace
