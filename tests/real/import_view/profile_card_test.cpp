#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "import_view/shown_import.h"
#include "support/keys.h"

namespace tavlo::test {
namespace {

struct Profile : ShownImport {
  void Show() {
    FillList();
    shown.ShowMain();
  }
  QString TextIn(const char* name) const {
    return qobject_cast<QLineEdit*>(shown.typist.Widget(name))->text();
  }
};

TEST_F(Profile, WhatIsTypedIntoABoxReachesTheForm) {
  Show();
  shown.typist.Click("txtImportSubject");
  shown.typist.Keys({keys::kEnd});
  shown.typist.Keys({'s'});
  EXPECT_EQ(shown.main.txtImportSubject.Value.Get(), "discharges");
  shown.typist.Click("chkImportPriority");
  EXPECT_FALSE(shown.main.chkImportPriority.Value);
}

TEST_F(Profile, ABoxTakesNoMoreLettersThanANameHasRoomFor) {
  Show();
  shown.typist.Click("txtImportAuthorID");
  shown.typist.Keys({keys::kEnd});
  for (int i = 0; i < 5; ++i) shown.typist.Keys({'7'});
  EXPECT_EQ(shown.main.txtImportAuthorID.Value.Get(), "880177");
}

TEST_F(Profile, ABoxShowsWhatItsFilterMakesOfALetterAtOnce) {
  forms::Text& box = shown.main.txtImportAuthorID;
  box.OnChange = [&] { box.Value = "8801"; };
  Show();
  shown.typist.Click("txtImportAuthorID");
  shown.typist.Keys({keys::kEnd});
  shown.typist.Keys({'x'});
  EXPECT_TRUE(shown.typist.Until([&] { return TextIn("txtImportAuthorID") == "8801"; }));
}

TEST_F(Profile, IsChosenByItsName) {
  int chosen = -1;
  shown.main.comboAuthorLastName.OnSelect = [&] {
    chosen = shown.main.comboAuthorLastName.ListIndex;
  };
  Show();
  auto* const names = qobject_cast<QComboBox*>(shown.typist.Widget("comboAuthorLastName"));
  ASSERT_EQ(names->count(), 4);
  names->setFocus();
  shown.typist.Keys({keys::kUp});
  EXPECT_TRUE(shown.typist.Until([&] { return chosen == 2; }));
}

TEST_F(Profile, TellsThatThePointerMovesOverItsOwnSurfaceOnly) {
  int moves = 0;
  shown.main.frameImportDemographics.OnPointerMove = [&] { ++moves; };
  Show();
  shown.typist.MoveTo(shown.typist.Middle("txtImportSubject"));
  shown.typist.MoveTo(shown.typist.Middle("txtImportSubject") + QPoint(3, 0));
  moves = 0;
  shown.typist.MoveTo(shown.typist.Middle("txtImportSubject") - QPoint(3, 0));
  EXPECT_EQ(moves, 0) << "a hand that types moves the mouse by accident";
  shown.typist.MoveTo(shown.typist.Middle("lblImportGoesAs"));
  shown.typist.MoveTo(shown.typist.Middle("lblImportGoesAs") + QPoint(3, 0));
  EXPECT_GT(moves, 0);
}

TEST_F(Profile, TellsThatTheNameIsGoneIntoByMouseOrKey) {
  int clicks = 0;
  shown.main.txtImportAuthorLastName.OnClick = [&] { ++clicks; };
  Show();
  shown.typist.Click("txtImportAuthorLastName");
  EXPECT_EQ(clicks, 1);
  shown.typist.Keys({keys::kTab});
  shown.typist.Keys({keys::kShift, keys::kTab});
  EXPECT_EQ(clicks, 2);
}

TEST_F(Profile, APriorityDocumentIsRed) {
  Show();
  const auto* const document = qobject_cast<QLabel*>(shown.typist.Widget("lblImportDocument"));
  const auto ink = [&] { return document->palette().color(QPalette::WindowText); };
  EXPECT_GT(ink().red(), ink().green() + 100);
  shown.main.chkImportPriority.Value = false;
  shown.typist.Rest();
  EXPECT_LT(ink().red(), ink().green() + 20);
}

}  // namespace
}  // namespace tavlo::test
