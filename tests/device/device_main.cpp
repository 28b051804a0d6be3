#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>

#include "desk.h"
#include "support/desktop.h"

namespace {

/// A typist is not root, and what root may read tells nothing of what a typist may.
bool BecomeNobody() {
  const passwd* const nobody = ::getpwnam("nobody");
  return nobody != nullptr && ::setgroups(0, nullptr) == 0 && ::setgid(nobody->pw_gid) == 0 &&
         ::setuid(nobody->pw_uid) == 0;
}

}  // namespace

/// Runs the tests of real pedals on a desktop of their own. Started as root, on a machine that is
/// there for nothing else.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  tavlo::test::Hardware hardware;
  if (!BecomeNobody()) {
    std::fprintf(stderr, "must be started as root\n");
    return 1;
  }
  const tavlo::test::Desktop desktop;
  if (!desktop.Fault().empty()) {
    std::fprintf(stderr, "%s\n", desktop.Fault().c_str());
    return 1;
  }
  tavlo::test::Desk desk(hardware);
  if (!desk.LayOut()) {
    std::fprintf(stderr, "no sound server\n");
    return 1;
  }
  tavlo::test::AtTheDesk::desk = &desk;
  return desk.RunTests() ? 0 : 1;
}
