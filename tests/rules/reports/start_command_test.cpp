#include "reports/start_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavlo::test {
namespace {

using reports::ReadStartCommand;
using reports::StartCommand;
using Commands = std::vector<StartCommand>;

TEST(StartCommand, TextOfBlanksMeansNothing) {
  EXPECT_EQ(ReadStartCommand(""), Commands{});
  EXPECT_EQ(ReadStartCommand(" \t "), Commands{});
}

TEST(StartCommand, OneWordIsTriedOnce) {
  EXPECT_EQ(ReadStartCommand("write.exe"), (Commands{{"write.exe", {}}}));
  EXPECT_EQ(ReadStartCommand("  /usr/bin/lowriter\t"), (Commands{{"/usr/bin/lowriter", {}}}));
}

TEST(StartCommand, WholeTextIsAProgramBeforeItIsSplit) {
  EXPECT_EQ(ReadStartCommand("/opt/My Writer/bin/writer"),
            (Commands{{"/opt/My Writer/bin/writer", {}}, {"/opt/My", {"Writer/bin/writer"}}}));
}

struct Split {
  const char* text;
  StartCommand command;
};

TEST(StartCommand, IsSplitAtBlanksOutsideOfQuotes) {
  const Split splits[] = {
      {"writer -n --view", {"writer", {"-n", "--view"}}},
      {"writer \t -n\t\t--view ", {"writer", {"-n", "--view"}}},
      {"\"/opt/My Writer/writer\" -n", {"/opt/My Writer/writer", {"-n"}}},
      {"'/opt/My Writer/writer' -n", {"/opt/My Writer/writer", {"-n"}}},
      {"\"/opt/My Writer/writer\"", {"/opt/My Writer/writer", {}}},
      {"/opt/\"My Writer\"/writer", {"/opt/My Writer/writer", {}}},
      {"writer \"it's\" 'a \"b\" c'", {"writer", {"it's", "a \"b\" c"}}},
      {"writer \"a\tb\"", {"writer", {"a\tb"}}},
      // Empty quotes.
      {"writer \"\" ''", {"writer", {"", ""}}},
      {"wri\"\"ter -n", {"writer", {"-n"}}},
      // A quote without a partner.
      {"/home/o'brien/writer -n", {"/home/o'brien/writer", {"-n"}}},
      {"writer \"a b", {"writer", {"\"a", "b"}}},
      {"writer a\" b", {"writer", {"a\"", "b"}}},
      {"writer \"a b\" c\"", {"writer", {"a b", "c\""}}},
      // What a shell would read more into.
      {"writer $HOME ~ *.txt a;b | c > d \\ e",
       {"writer", {"$HOME", "~", "*.txt", "a;b", "|", "c", ">", "d", "\\", "e"}}},
      {"writer \xC3\xA4\xC2\xA0z \xFF", {"writer", {"\xC3\xA4\xC2\xA0z", "\xFF"}}},
  };
  for (const Split& split : splits) {
    SCOPED_TRACE(split.text);
    const Commands commands = ReadStartCommand(split.text);
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[1], split.command);
  }
}

TEST(StartCommand, EmptyQuotesInPlaceOfTheProgramNameNone) {
  EXPECT_EQ(ReadStartCommand("\"\" -n"), (Commands{{"\"\" -n", {}}}));
  EXPECT_EQ(ReadStartCommand("''"), (Commands{{"''", {}}}));
}

}  // namespace
}  // namespace tavlo::test
