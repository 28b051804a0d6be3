#include "intake/file_progress.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavlo::test {
namespace {

struct FileProgressTest : testing::Test {
  std::vector<std::string> said;

  void Treat(int files, std::optional<std::size_t> known) {
    intake::FileProgress progress([this](const std::string& text) { said.push_back(text); },
                                  "Sending", known);
    for (int i = 0; i < files; ++i) progress.Next();
  }
};

TEST_F(FileProgressTest, EachFileOfALongBatchIsTold) {
  Treat(50, 50);
  ASSERT_EQ(said.size(), 51u);
  EXPECT_EQ(said.front(), "Sending 1 of 50 files");
  EXPECT_EQ(said[49], "Sending 50 of 50 files");
  EXPECT_EQ(said.back(), "");
}

TEST_F(FileProgressTest, AShortBatchSaysNothing) {
  Treat(49, 49);
  EXPECT_TRUE(said.empty());
}

TEST_F(FileProgressTest, WhereTheirNumberIsNotKnownTheFiftiethIsTheFirstThatIsTold) {
  Treat(51, {});
  EXPECT_EQ(said, (std::vector<std::string>{"Sending file 50", "Sending file 51", ""}));
}

}  // namespace
}  // namespace tavlo::test
