#include <gtest/gtest.h>

#include <string>

#include "lists/completed_list.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using forms::By;

/// Two completed documents, of which a click sounds the beginning.
struct CompletedStops : testing::Test, ListsBench {
  CompletedStops() {
    completed.MakeColumns("Subject");
    form.frameInQueue.Visible = false;
    form.frameCompleted.Visible = true;
    config.txtAutoPreview.Value = "5";
    for (const char* author : {"Brown", "Okafor"}) {
      const std::string path = folders.CompletedPath() + Document().By(author).Name();
      disk.WithFile(path, path);
      file.Sounds[path] = {.samples = 80'000};
    }
  }
  void EnterAndListen() {
    completed.RefreshCompletedList();
    completed.SetCompletedButtons();
    form.listViewCompleted.RowClick(0);
    ASSERT_TRUE(engine.IsPlaying);
  }
};

TEST_F(CompletedStops, ReturnToQueueEndsAWind) {
  EnterAndListen();
  transport.WindDirection = playback::Wind::Forward;
  transport.tmrRewindForward.Start();
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(transport.WindDirection, playback::Wind::None);
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
  EXPECT_EQ(prompts, std::vector<std::string>{"MovedToQueue"});
}

TEST_F(CompletedStops, BothDeletesEndThePreview) {
  for (forms::Command* command : {&form.cmdDeleteOneCompleted, &form.cmdDeleteAllCompleted}) {
    EnterAndListen();
    loop.Expect({.reply = Reply::Yes});
    loop.Expect({.reply = Reply::Yes});
    command->Press(By::Hand);
    EXPECT_FALSE(engine.IsPlaying) << command->Name;
    EXPECT_FALSE(engine.tmrPlaySnipet.Enabled()) << command->Name;
    EXPECT_FALSE(file.IsOpen()) << command->Name;
  }
}

}  // namespace
}  // namespace tavlo::test
