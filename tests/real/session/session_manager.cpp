#include "session/session_manager.h"

#include <poll.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <functional>

#include "support/screen.h"

// The library's headers name macros as others name types, so they come last.
#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>

namespace tavlo::test {
namespace {

char vendor[] = "tavlodeck tests";
char release[] = "1";

Bool LetAnybodyIn(char*) { return True; }

bool HasNews(int handle) {
  pollfd look{.fd = handle, .events = POLLIN, .revents = 0};
  return ::poll(&look, 1, 0) == 1;
}

}  // namespace

class SessionManager::Desk {
 public:
  Desk();
  ~Desk();
  Desk(const Desk&) = delete;

  bool Turn(const std::function<bool()>& until);
  bool Saved() const { return saved_; }
  const std::vector<std::string>& RestartCommand() const { return restartCommand_; }
  void Ask(int what, bool sessionEnds, int interaction);

 private:
  static Status TakeClient(SmsConn client, SmPointer self, unsigned long* answered,
                           SmsCallbacks* answers, char** refusal);
  void Accept();
  void Keep(const SmProp& property);

  int listenerCount_ = 0;
  IceListenObj* listeners_ = nullptr;
  IceConn connection_ = nullptr;
  SmsConn client_ = nullptr;
  bool saved_ = false;
  std::vector<std::string> restartCommand_;
};

SessionManager::Desk::Desk() {
  std::array<char, 256> why{};
  // The library's own answer to a program that is gone is to end this one.
  IceSetIOErrorHandler([](IceConn) {});
  SmsInitialize(vendor, release, &TakeClient, this, &LetAnybodyIn, why.size(), why.data());
  if (!IceListenForConnections(&listenerCount_, &listeners_, why.size(), why.data())) {
    std::fprintf(stderr, "%s\n", why.data());
    std::abort();
  }
  for (int i = 0; i < listenerCount_; ++i) IceSetHostBasedAuthProc(listeners_[i], &LetAnybodyIn);
  char* const names = IceComposeNetworkIdList(listenerCount_, listeners_);
  ::setenv("SESSION_MANAGER", names, 1);
  std::free(names);
}

SessionManager::Desk::~Desk() {
  ::unsetenv("SESSION_MANAGER");
  if (client_) SmsCleanUp(client_);
  if (connection_) {
    IceSetShutdownNegotiation(connection_, False);
    IceCloseConnection(connection_);
  }
  IceFreeListenObjs(listenerCount_, listeners_);
}

void SessionManager::Desk::Ask(int what, bool sessionEnds, int interaction) {
  SmsSaveYourself(client_, what, sessionEnds, interaction, False);
  IceFlush(connection_);
}

Status SessionManager::Desk::TakeClient(SmsConn client, SmPointer self, unsigned long* answered,
                                        SmsCallbacks* answers, char**) {
  static_cast<Desk*>(self)->client_ = client;
  *answered = SmsRegisterClientProcMask | SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask |
              SmsSetPropertiesProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
              SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
              SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
  for (auto* each :
       {&answers->register_client.manager_data, &answers->save_yourself_done.manager_data,
        &answers->set_properties.manager_data}) {
    *each = self;
  }
  answers->register_client.callback = [](SmsConn newcomer, SmPointer, char* before) -> Status {
    if (before) return 0;
    char* const id = SmsGenerateClientID(newcomer);
    SmsRegisterClientReply(newcomer, id);
    std::free(id);
    SmsSaveYourself(newcomer, SmSaveLocal, False, SmInteractStyleNone, False);
    return 1;
  };
  answers->save_yourself_done.callback = [](SmsConn saved, SmPointer manager, Bool) {
    static_cast<Desk*>(manager)->saved_ = true;
    SmsSaveComplete(saved);
  };
  answers->close_connection.callback = [](SmsConn, SmPointer, int, char** reasons) {
    SmFreeReasons(0, reasons);
  };
  answers->set_properties.callback = [](SmsConn, SmPointer manager, int count,
                                        SmProp** properties) {
    for (int i = 0; i < count; ++i) {
      static_cast<Desk*>(manager)->Keep(*properties[i]);
      SmFreeProperty(properties[i]);
    }
    std::free(properties);
  };
  answers->interact_request.callback = [](SmsConn asking, SmPointer, int) { SmsInteract(asking); };
  answers->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
  answers->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
  answers->save_yourself_phase2_request.callback = [](SmsConn asking, SmPointer) {
    SmsSaveYourselfPhase2(asking);
  };
  answers->delete_properties.callback = [](SmsConn, SmPointer, int count, char** names) {
    for (int i = 0; i < count; ++i) std::free(names[i]);
    std::free(names);
  };
  answers->get_properties.callback = [](SmsConn asking, SmPointer) {
    SmsReturnProperties(asking, 0, nullptr);
  };
  return 1;
}

bool SessionManager::Desk::Turn(const std::function<bool()>& until) {
  return Until([&] {
    if (!connection_) Accept();
    while (connection_ && HasNews(IceConnectionNumber(connection_))) {
      if (IceProcessMessages(connection_, nullptr, nullptr) != IceProcessMessagesSuccess) break;
    }
    return until();
  });
}

void SessionManager::Desk::Keep(const SmProp& property) {
  if (std::string(property.name) != SmRestartCommand) return;
  restartCommand_.clear();
  for (int i = 0; i < property.num_vals; ++i) {
    const SmPropValue& word = property.vals[i];
    restartCommand_.emplace_back(static_cast<const char*>(word.value),
                                 static_cast<std::size_t>(word.length));
  }
}

void SessionManager::Desk::Accept() {
  for (int i = 0; i < listenerCount_; ++i) {
    if (!HasNews(IceGetListenConnectionNumber(listeners_[i]))) continue;
    IceAcceptStatus status = IceAcceptSuccess;
    connection_ = IceAcceptConnection(listeners_[i], &status);
    return;
  }
}

SessionManager::SessionManager() : desk_(std::make_unique<Desk>()) {}

SessionManager::~SessionManager() = default;

bool SessionManager::Welcome() {
  return desk_->Turn([this] { return desk_->Saved(); });
}

std::vector<std::string> SessionManager::RestartCommand() {
  desk_->Turn([this] { return !desk_->RestartCommand().empty(); });
  return desk_->RestartCommand();
}

void SessionManager::BeginLogout() { desk_->Ask(SmSaveBoth, true, SmInteractStyleAny); }

}  // namespace tavlo::test
