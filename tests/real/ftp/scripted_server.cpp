#include "ftp/scripted_server.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <utility>

namespace tavlo::test {
namespace {

Command CommandOf(const std::string& line) {
  const std::size_t blank = line.find(' ');
  Command command{.verb = line.substr(0, blank),
                  .argument = blank == line.npos ? "" : line.substr(blank + 1)};
  std::ranges::transform(command.verb, command.verb.begin(), [](unsigned char letter) {
    return static_cast<char>(std::toupper(letter));
  });
  return command;
}

struct Reply {
  const char* verb;
  const char* words;
};

/// Answers that say the same each time.
constexpr Reply kReplies[] = {
    {"USER", "331 And the password?\r\n"},
    {"PASS", "230 Come in.\r\n"},
    {"SYST", "215 UNIX Type: L8\r\n"},
    {"TYPE", "200 Done.\r\n"},
    {"MODE", "200 Done.\r\n"},
    {"STRU", "200 Done.\r\n"},
    {"PWD", "257 \"/\" is it.\r\n"},
    {"CWD", "250 Done.\r\n"},
    {"NOOP", "200 Done.\r\n"},
    {"ABOR", "226 Done.\r\n"},
    {"QUIT", "221 Farewell.\r\n"},
};

}  // namespace

Conversation::Conversation(ScriptedServer& server, Socket control)
    : server_(server), control_(std::move(control)) {}

bool Conversation::Say(std::string_view bytes) { return Send(control_, bytes); }

bool Conversation::Send(const Socket& to, std::string_view bytes) {
  while (!bytes.empty()) {
    if (!to.IsOpen() || !AwaitNews(to.Handle(), POLLOUT)) return false;
    const ssize_t sent =
        ::send(to.Handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::optional<Command> Conversation::Hear() {
  while (unread_.find('\n') == unread_.npos) {
    if (!control_.IsOpen() || !AwaitNews(control_.Handle(), POLLIN)) return {};
    char bytes[4096];
    const ssize_t got = ::recv(control_.Handle(), bytes, sizeof bytes, 0);
    if (got <= 0) return {};
    unread_.append(bytes, static_cast<std::size_t>(got));
  }
  const std::size_t end = unread_.find('\n') + 1;
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end);
  while (line.ends_with('\r') || line.ends_with('\n')) line.pop_back();
  server_.Keep(line);
  return CommandOf(line);
}

bool Conversation::AwaitNews(int descriptor, short events) {
  pollfd news[] = {{.fd = descriptor, .events = events, .revents = 0},
                   {.fd = server_.end_.Descriptor(), .events = POLLIN, .revents = 0},
                   {.fd = control_.Handle(), .events = POLLRDHUP, .revents = 0}};
  while (true) {
    ::poll(news, std::size(news), -1);
    if (news[1].revents != 0) return false;
    if (news[0].revents != 0) return true;
    if (news[2].revents != 0) return false;
  }
}

bool Conversation::Await(const Gate& gate) { return AwaitNews(gate.Descriptor(), POLLIN); }

void Conversation::AwaitHangUp() {
  const Gate never;
  AwaitNews(never.Descriptor(), POLLIN);
}

bool Conversation::OpenData() {
  if (activePort_ > 0) {
    data_ = ConnectTo("127.0.0.1", std::exchange(activePort_, 0));
  } else if (passive_.IsOpen() && AwaitNews(passive_.Handle(), POLLIN)) {
    data_ = Accept(passive_);
    passive_.Close();
    LookForStrays();
  }
  return data_.IsOpen();
}

void Conversation::LookForStrays() {
  pollfd news{.fd = elsewhere_.Handle(), .events = POLLIN, .revents = 0};
  if (!elsewhere_.IsOpen() || ::poll(&news, 1, 0) == 0) return;
  const std::lock_guard lock(server_.mutex_);
  ++server_.strays_;
}

bool Conversation::PutData(std::string_view bytes) { return Send(data_, bytes); }

void Conversation::Transfer(std::string_view bytes) {
  Say("150 Here it comes.\r\n");
  const bool whole = OpenData() && PutData(bytes);
  CloseData();
  Say(whole ? "226 That was it.\r\n" : "426 Nobody took it.\r\n");
}

void Conversation::Die() {
  data_.Break();
  passive_.Close();
  control_.Break();
}

void Conversation::Answer(const Command& command) {
  for (const Reply& reply : kReplies) {
    if (command.verb != reply.verb) continue;
    Say(reply.words);
    if (command.verb == "QUIT") HangUp();
    return;
  }
  if (command.verb == "PASV" || command.verb == "EPSV") {
    AnswerPassive(command.verb == "EPSV");
  } else if (command.verb == "PORT" || command.verb == "EPRT") {
    AnswerActive(command);
  } else if (command.verb == "NLST") {
    std::string names;
    for (const auto& [name, bytes] : server_.manners_.files) names += name + "\r\n";
    Transfer(server_.manners_.listing.value_or(names));
  } else {
    AnswerAboutFile(command);
  }
}

void Conversation::AnswerPassive(bool extended) {
  passive_ = Listen();
  const int port = PortOf(passive_);
  std::string named = server_.manners_.passiveHost;
  std::ranges::replace(named, ',', '.');
  elsewhere_ = named == "127.0.0.1" ? Socket() : Listen(named, port);
  Say(extended ? "229 Come (|||" + std::to_string(port) + "|)\r\n"
               : "227 Come (" + server_.manners_.passiveHost + "," + std::to_string(port / 256) +
                     "," + std::to_string(port % 256) + ")\r\n");
}

void Conversation::AnswerActive(const Command& command) {
  int high = 0;
  int low = 0;
  const char* const where = command.argument.c_str();
  const bool said = command.verb == "EPRT"
                        ? std::sscanf(where, "|1|127.0.0.1|%d|", &low) == 1
                        : std::sscanf(where, "127,0,0,1,%d,%d", &high, &low) == 2;
  activePort_ = said ? high * 256 + low : 0;
  Say(said ? "200 Done.\r\n" : "501 Where?\r\n");
}

void Conversation::AnswerAboutFile(const Command& command) {
  const auto file = server_.manners_.files.find(command.argument);
  const bool known = file != server_.manners_.files.end();
  const bool about = command.verb == "SIZE" || command.verb == "RETR" || command.verb == "LIST" ||
                     command.verb == "DELE";
  if (!about) {
    Say("500 What?\r\n");
  } else if (!known) {
    Say("550 No such file.\r\n");
  } else if (command.verb == "SIZE") {
    Say("213 " + std::to_string(file->second.size()) + "\r\n");
  } else if (command.verb == "RETR") {
    Transfer(file->second);
  } else if (command.verb == "LIST") {
    Transfer("-rw-r--r-- 1 brown typists " + std::to_string(file->second.size()) +
             " Nov 23 05:56 " + file->first + "\r\n");
  } else {
    const std::lock_guard lock(server_.mutex_);
    server_.deleted_.insert(command.argument);
    Say("250 Gone.\r\n");
  }
}

ScriptedServer::ScriptedServer(Manners manners)
    : manners_(std::move(manners)), thread_([this] { Run(); }) {}

ScriptedServer::~ScriptedServer() {
  end_.Open();
  thread_.join();
  for (std::thread& conversation : conversations_) conversation.join();
}

void ScriptedServer::Run() {
  while (true) {
    pollfd news[] = {{.fd = end_.Descriptor(), .events = POLLIN, .revents = 0},
                     {.fd = listening_.Handle(), .events = POLLIN, .revents = 0}};
    ::poll(news, std::size(news), -1);
    if (news[0].revents != 0) return;
    Socket guest = Accept(listening_);
    if (!guest.IsOpen()) continue;
    {
      const std::lock_guard lock(mutex_);
      ++guests_;
    }
    conversations_.emplace_back([this, handle = guest.Release()] {
      {
        Conversation conversation(*this, Socket(handle));
        Converse(conversation);
      }
      const std::lock_guard lock(mutex_);
      ++gone_;
    });
  }
}

void ScriptedServer::Converse(Conversation& conversation) const {
  if (manners_.greet) {
    manners_.greet(conversation);
  } else {
    conversation.Say(manners_.greeting);
  }
  while (const std::optional<Command> command = conversation.Hear()) {
    if (!manners_.instead || !manners_.instead(conversation, *command)) {
      conversation.Answer(*command);
    }
  }
}

void ScriptedServer::Keep(const std::string& line) {
  const std::lock_guard lock(mutex_);
  heard_.push_back(line);
}

std::vector<std::string> ScriptedServer::Heard() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

int ScriptedServer::CountHeard(std::string_view beginning) const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(std::ranges::count_if(
      heard_, [&](const std::string& line) { return line.starts_with(beginning); }));
}

std::set<std::string> ScriptedServer::Deleted() const {
  const std::lock_guard lock(mutex_);
  return deleted_;
}

int ScriptedServer::Guests() const {
  const std::lock_guard lock(mutex_);
  return guests_;
}

int ScriptedServer::Strays() const {
  const std::lock_guard lock(mutex_);
  return strays_;
}

int ScriptedServer::Gone() const {
  const std::lock_guard lock(mutex_);
  return gone_;
}

}  // namespace tavlo::test
