// Calls a media player on a message bus in every way that comes to mind, right and wrong, so many
// times a second, and takes the answers.
//
//     bus_flood ADDRESS NAME CALLS [RATE] [KIND]
//
// RATE is in calls a second, 10000 where it is not given and 0 for as fast as it goes. KIND is
// "everything", or "questions" for what asks the player to do nothing. It prints how many calls it
// has made and how many answers came, and ends with status 0 when each call had one.

#include <systemd/sd-bus.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kPath = "/org/mpris/MediaPlayer2";
constexpr const char* kRoot = "org.mpris.MediaPlayer2";
constexpr const char* kPlayer = "org.mpris.MediaPlayer2.Player";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kPeer = "org.freedesktop.DBus.Peer";
constexpr const char* kIntrospectable = "org.freedesktop.DBus.Introspectable";
/// Answers that are under way; the library keeps a note of each.
constexpr int kMostOpen = 2000;

struct Flood {
  sd_bus* bus = nullptr;
  const char* name = nullptr;
  int calls = 0;
  int answers = 0;
};

/// A call without its arguments, to be sent once they are in.
class Call {
 public:
  Call(Flood& flood, const char* path, const char* interface, const char* method) : flood_(flood) {
    sd_bus_message_new_method_call(flood.bus, &message_, flood.name, path, interface, method);
  }
  ~Call() {
    sd_bus_call_async(flood_.bus, nullptr, message_, Count, &flood_, 0);
    sd_bus_message_unref(message_);
    ++flood_.calls;
  }
  Call(const Call&) = delete;

  template <typename... Values>
  void With(const char* types, Values... values) {
    sd_bus_message_append(message_, types, values...);
  }

 private:
  static int Count(sd_bus_message*, void* flood, sd_bus_error*) {
    ++static_cast<Flood*>(flood)->answers;
    return 1;
  }

  Flood& flood_;
  sd_bus_message* message_ = nullptr;
};

template <typename Value>
void Set(Flood& flood, const char* property, const char* type, Value value) {
  Call(flood, kPath, kProperties, "Set").With("ssv", kPlayer, property, type, value);
}

// Each makes one call; the number tells one from the next.

void LookInside(Flood& flood, int number) {
  constexpr std::array paths{kPath, "/", "/org", "/org/mpris", "/no/such/object"};
  Call(flood, paths[number % paths.size()], kIntrospectable, "Introspect");
}

void AskPeer(Flood& flood, int number) {
  constexpr std::array methods{"Ping", "GetMachineId", "NoSuchMethod"};
  Call(flood, kPath, kPeer, methods[number % methods.size()]);
}

void AskForOne(Flood& flood, int number) {
  constexpr std::array properties{"PlaybackStatus", "Metadata", "Position", "Rate",
                                  "Volume",         "CanSeek",  "Shuffle",  ""};
  Call(flood, kPath, kProperties, "Get")
      .With("ss", kPlayer, properties[number % properties.size()]);
}

void AskForAll(Flood& flood, int number) {
  constexpr std::array interfaces{kPlayer, kRoot, "no.such.interface", ""};
  Call(flood, kPath, kProperties, "GetAll").With("s", interfaces[number % interfaces.size()]);
}

void AskWrongly(Flood& flood, int number) {
  switch (number % 4) {
    case 0:
      return Call(flood, kPath, kProperties, "Get").With("x", std::int64_t{7});
    case 1:
      return Call(flood, kPath, kProperties, "Set").With("sss", kPlayer, "Rate", "fast");
    case 2:
      return Set(flood, "Rate", "s", "fast");
    default:
      return Set(flood, "Metadata", "x", std::int64_t{-1});
  }
}

void CommandWrongly(Flood& flood, int number) {
  static const std::string huge(100'000, 'x');
  switch (number % 5) {
    case 0:
      return Call(flood, kPath, kPlayer, "Seek").With("s", "far");
    case 1:
      return Call(flood, kPath, kRoot, "Seek").With("x", std::int64_t{1});
    case 2:
      return Call(flood, kPath, kPlayer, "Play").With("d", 1.0);
    case 3:
      return Call(flood, "/elsewhere", kPlayer, "Quit").With("");
    default:
      return Call(flood, kPath, kPlayer, "OpenUri").With("s", huge.c_str());
  }
}

void Command(Flood& flood, int number) {
  constexpr std::array methods{"Play", "Pause", "PlayPause", "Stop", "Next", "Previous"};
  Call(flood, kPath, kPlayer, methods[number % methods.size()]);
}

void CommandWindow(Flood& flood, int number) {
  Call(flood, kPath, kRoot, number % 2 == 0 ? "Raise" : "Quit");
}

void Move(Flood& flood, int number) {
  constexpr std::array times{std::int64_t{0}, std::int64_t{-1}, std::int64_t{1'000'000},
                             std::numeric_limits<std::int64_t>::min(),
                             std::numeric_limits<std::int64_t>::max()};
  const std::int64_t time = times[number % times.size()];
  if (number % 2 == 0) return Call(flood, kPath, kPlayer, "Seek").With("x", time);
  const std::string track = "/invalid/tavlodeck/dictation/" + std::to_string(number % 3);
  Call(flood, kPath, kPlayer, "SetPosition").With("ox", track.c_str(), time);
}

void SetNumber(Flood& flood, int number) {
  const std::array<double, 9> numbers{0.0,    1.0,          -1.0,     1e308,    -1e308,
                                      5e-324, std::nan(""), INFINITY, -INFINITY};
  Set(flood, number % 2 == 0 ? "Rate" : "Volume", "d", numbers[number % numbers.size()]);
}

constexpr std::array kQuestions{LookInside, AskPeer,    AskForOne,
                                AskForAll,  AskWrongly, CommandWrongly};
constexpr std::array kEverything{LookInside,     AskPeer, AskForOne,     AskForAll, AskWrongly,
                                 CommandWrongly, Command, CommandWindow, Move,      SetNumber};

/// Takes the answers that are there; waits for some where too many are under way, or `all` are to
/// come. False when the bus has gone.
bool TakeAnswers(Flood& flood, bool all) {
  while (true) {
    const int outcome = sd_bus_process(flood.bus, nullptr);
    if (outcome < 0) return false;
    if (outcome > 0) continue;
    const int open = flood.calls - flood.answers;
    if (open == 0 || (!all && open < kMostOpen)) return true;
    if (sd_bus_wait(flood.bus, UINT64_MAX) < 0) return false;
  }
}

bool Run(Flood& flood, int calls, int rate, std::span<void (*const)(Flood&, int)> kinds) {
  const auto begin = Clock::now();
  for (int number = 0; number < calls; ++number) {
    kinds[number % kinds.size()](flood, number / static_cast<int>(kinds.size()));
    if (!TakeAnswers(flood, /*all=*/false)) return false;
    if (rate > 0) {
      std::this_thread::sleep_until(
          begin + std::chrono::microseconds(std::int64_t{1'000'000} * number / rate));
    }
  }
  return TakeAnswers(flood, /*all=*/true);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  Flood flood{.name = argv[2]};
  const int rate = argc > 4 ? std::atoi(argv[4]) : 10'000;
  const bool questions = argc > 5 && std::string_view(argv[5]) == "questions";
  sd_bus_new(&flood.bus);
  sd_bus_set_address(flood.bus, argv[1]);
  sd_bus_set_bus_client(flood.bus, 1);
  if (sd_bus_start(flood.bus) < 0) return 1;
  using Kinds = std::span<void (*const)(Flood&, int)>;
  const bool ran =
      Run(flood, std::atoi(argv[3]), rate, questions ? Kinds(kQuestions) : Kinds(kEverything));
  std::printf("%d calls, %d answers\n", flood.calls, flood.answers);
  sd_bus_close_unref(flood.bus);
  return ran && flood.answers == flood.calls ? 0 : 1;
}
