#include "reports/column_text.h"

#include <gtest/gtest.h>

#include <string>

namespace tavlo::test {
namespace {

using reports::ColumnText;

/// The text with a mark put at a column behind it.
std::string Marked(const std::string& text, std::size_t column) {
  ColumnText line;
  line.Put(text);
  line.PutAt(column, "|");
  return line.Text();
}

TEST(ColumnText, FirstColumnIsOne) {
  ColumnText line;
  line.PutAt(1, "a");
  EXPECT_EQ(line.Text(), "a");
}

TEST(ColumnText, PadsWithBlanksUpToTheColumn) { EXPECT_EQ(Marked("ab", 6), "ab   |"); }

TEST(ColumnText, TextThatEndsJustBeforeTheColumnStaysOnTheLine) {
  EXPECT_EQ(Marked("abcde", 6), "abcde|");
}

TEST(ColumnText, TextThatReachedTheColumnPushesTheNextToTheFollowingLine) {
  EXPECT_EQ(Marked("abcdef", 6), "abcdef\n     |");
  EXPECT_EQ(Marked("abcdefghijkl", 6), "abcdefghijkl\n     |");
}

TEST(ColumnText, EmptyTextStillTakesTheLineToItsColumn) {
  ColumnText line;
  line.PutAt(4, "");
  line.EndLine();
  EXPECT_EQ(line.Text(), "   \n");
}

TEST(ColumnText, NewLineBeginsAtItsFirstColumn) {
  ColumnText line;
  line.Put("abcdef");
  line.EndLine();
  line.PutAt(3, "x");
  EXPECT_EQ(line.Text(), "abcdef\n  x");
}

TEST(ColumnText, CharactersCountAndNotBytes) {
  EXPECT_EQ(Marked("Åström", 8), "Åström |");
  EXPECT_EQ(Marked("山田", 4), "山田 |");
  EXPECT_EQ(Marked("\U0001F600", 3), "\U0001F600 |");
}

TEST(ColumnText, StrayByteCountsAsOneAndShowsAsTheListsShowIt) {
  EXPECT_EQ(Marked("M\xFCller", 8), "M\uFFFDller |");
  EXPECT_EQ(Marked("\xC3", 3), "\uFFFD |");
  EXPECT_EQ(Marked("\x80\x80", 4), "\uFFFD\uFFFD |");
}

TEST(ColumnText, FormsThatUtf8ForbidShowLikeAStrayByte) {
  for (const char* forbidden :
       {"\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_EQ(Marked(forbidden, 3), "\uFFFD |");
  }
  for (const char* allowed : {"\u0800", "\uD7FF", "\U00010000", "\U0010FFFF"}) {
    EXPECT_EQ(Marked(allowed, 3), std::string(allowed) + " |");
  }
}

TEST(ColumnText, NothingInATextBreaksTheLine) {
  EXPECT_EQ(Marked("a\nb\r\nc", 8), "a?b??c |");
  EXPECT_EQ(Marked("\t\f\v\x1B\x7F", 7), "????? |");
  EXPECT_EQ(Marked(std::string(1, '\0'), 3), "? |");
  EXPECT_EQ(Marked("\u0085\u2028\u2029", 5), "??? |");
  EXPECT_EQ(Marked("\u00A0\u2027", 4), "\u00A0\u2027 |");
}

TEST(ColumnText, NothingInATextTurnsTheRestOfTheLine) {
  EXPECT_EQ(Marked("\u202Eab\u061C\u2066\u200F", 8), "?ab??? |");
  EXPECT_EQ(Marked("\u05D0\u0627", 4), "\u05D0\u0627 |") << "letters have their own direction";
}

}  // namespace
}  // namespace tavlo::test
