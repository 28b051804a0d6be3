#include "quiet_rooms.h"

#include <cstdio>
#include <cstdlib>

namespace tavlo::bench {

base::Reply LoopWithoutHands::ShowBox(const base::MessageBox& box) {
  std::fprintf(stderr, "%s: %s\n", box.title.c_str(), box.text.c_str());
  std::_Exit(1);
}

QuietRooms::QuietRooms(const std::string& home) : folders(disk, home + "/Lyrane/TavloDeck") {}

}  // namespace tavlo::bench
