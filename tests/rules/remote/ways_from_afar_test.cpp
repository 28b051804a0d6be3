#include "remote/ways_from_afar.h"

#include <gtest/gtest.h>

#include <string>

#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using remote::AfarAction;

struct WaysFromAfarTest : testing::Test, DeckBench {
  const std::string& Words() { return config.lblWaysFromAfar.Value; }
  void Settle() { loop.Advance(base::Duration{0}); }
};

TEST_F(WaysFromAfarTest, SayThatNothingRunsTheDeckWhereNothingDoes) {
  usbWatcher.Pedal = pedals::UsbPresence::NoPedal;
  bus.SetThere(false);
  StartUntilReady();
  EXPECT_EQ(Words(), "Nothing runs the deck from another window now.");
  EXPECT_EQ(config.lblMediaKeys.Value.Get(),
            "Media keys do not reach the deck: the desktop's session bus is not there.");
}

TEST_F(WaysFromAfarTest, NameThemAllInOneSentence) {
  usbWatcher.Pedal = pedals::UsbPresence::Ready;
  serialPort.Plug({1});
  StartWith(
      {{"PlayStopKey", "F4"}, {"USBorSerialFootPedal", "S"}, {"SerialFootPedalComPort", "1"}});
  EXPECT_EQ(Words(),
            "From any window the deck is run by the USB pedal, the serial pedal, keys and media "
            "keys.");
  EXPECT_EQ(config.lblMediaKeys.Value.Get(),
            "Media keys, headset buttons and lock screens run the deck.");
}

TEST_F(WaysFromAfarTest, FollowTheBus) {
  usbWatcher.Pedal = pedals::UsbPresence::NoPedal;
  StartUntilReady();
  EXPECT_EQ(Words(), "From any window the deck is run by media keys.");
  bus.SetThere(false);
  Settle();
  EXPECT_EQ(Words(), "Nothing runs the deck from another window now.");
  bus.SetThere(true);
  Settle();
  EXPECT_EQ(Words(), "From any window the deck is run by media keys.");
}

TEST_F(WaysFromAfarTest, NameKeysOnlyWhileOneIsTheDecks) {
  usbWatcher.Pedal = pedals::UsbPresence::NoPedal;
  bus.SetThere(false);
  keys.OfOthers = {"F4"};
  StartWith({{"PlayStopKey", "F4"}});
  EXPECT_EQ(Words(), "Nothing runs the deck from another window now.");
  keys.OfOthers = {};
  keys.ChangeDesktop();
  Settle();
  EXPECT_EQ(Words(), "From any window the deck is run by keys.");
  form.mnuConfiguration.Press(By::Hand);
  config.tabConfiguration.RowClick(5);
  config.keys[remote::IndexOf(AfarAction::PlayStop)].txtKey.Change("");
  Settle();
  EXPECT_EQ(Words(), "Nothing runs the deck from another window now.") << "the last one is cleared";
}

TEST_F(WaysFromAfarTest, FollowThePedal) {
  usbWatcher.Pedal = pedals::UsbPresence::NoPedal;
  bus.SetThere(false);
  StartUntilReady();
  usbWatcher.Plug(pedals::UsbPresence::Ready);
  loop.Advance(1s);
  EXPECT_EQ(Words(), "From any window the deck is run by the USB pedal.");
}

TEST_F(WaysFromAfarTest, OfferThePlayerAtTheEndOfTheLoadAndWithdrawItAtTheExit) {
  deck.Start();
  EXPECT_FALSE(bus.Offered());
  loop.Advance(10s);
  EXPECT_TRUE(bus.Offered());
  loop.Expect({.reply = base::Reply::Yes});
  form.mnuExit.Press(By::Hand);
  EXPECT_FALSE(bus.Offered());
}

}  // namespace
}  // namespace tavlo::test
