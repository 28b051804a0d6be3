#include "base/one_line.h"

#include <gtest/gtest.h>

namespace tavlo::test {
namespace {

using base::OneLine;
using base::ShownPart;

TEST(OneLine, LeavesTextAsItIs) {
  EXPECT_EQ(OneLine(""), "");
  EXPECT_EQ(OneLine("0007 0 Brown_.wav"), "0007 0 Brown_.wav");
  EXPECT_EQ(OneLine("\xC3\x85ngstr\xC3\xB6m \xE2\x82\xAC \xF0\x9F\x8E\xA7"),
            "\xC3\x85ngstr\xC3\xB6m \xE2\x82\xAC \xF0\x9F\x8E\xA7");
}

TEST(OneLine, SpellsControlCharacters) {
  EXPECT_EQ(OneLine("a\nb\r\tc\x1B[2J\x7F"), "a\\x0Ab\\x0D\\x09c\\x1B[2J\\x7F");
  EXPECT_EQ(OneLine("\xC2\x85"), "\\xC2\\x85");
}

TEST(OneLine, SpellsWhatBreaksALineOrTurnsIt) {
  EXPECT_EQ(OneLine("\xE2\x80\xA8"), "\\xE2\\x80\\xA8");
  EXPECT_EQ(OneLine("\xE2\x80\xAE"), "\\xE2\\x80\\xAE");
  EXPECT_EQ(OneLine("\xE2\x81\xA6"), "\\xE2\\x81\\xA6");
}

TEST(OneLine, SpellsBytesThatAreNoText) {
  EXPECT_EQ(OneLine("\xFF\xFE"), "\\xFF\\xFE");
  EXPECT_EQ(OneLine("\xC3\x28"), "\\xC3(");
  EXPECT_EQ(OneLine("cut \xE2\x82"), "cut \\xE2\\x82");
  EXPECT_EQ(OneLine("\xA0"), "\\xA0");
  // Longer than it need be, half of a pair, and behind the last character.
  EXPECT_EQ(OneLine("\xC0\xAF"), "\\xC0\\xAF");
  EXPECT_EQ(OneLine("\xE0\x80\x8A"), "\\xE0\\x80\\x8A");
  EXPECT_EQ(OneLine("\xED\xA0\x80"), "\\xED\\xA0\\x80");
  EXPECT_EQ(OneLine("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");
}

TEST(ShownPart, LeavesTextAsItIs) {
  EXPECT_EQ(ShownPart(""), "");
  EXPECT_EQ(ShownPart("Strg+Umschalt+F4 \xE2\x82\xAC"), "Strg+Umschalt+F4 \xE2\x82\xAC");
}

TEST(ShownPart, LacksWhatALineMayNotHold) {
  EXPECT_EQ(ShownPart("a\nb\tc\x1B[2J\x7F\xC2\x85"), "abc[2J");
  EXPECT_EQ(ShownPart("\xE2\x80\xAE"
                      "4F\xE2\x80\xA8"),
            "4F");
  EXPECT_EQ(ShownPart("\xFF\xC3(cut \xE2\x82"), "(cut ");
}

}  // namespace
}  // namespace tavlo::test
