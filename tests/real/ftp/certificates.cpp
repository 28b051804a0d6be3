#include "ftp/certificates.h"

#include "support/other_program.h"

namespace tavlo::test {
namespace {

constexpr const char* kOwnName = "/CN=127.0.0.1' -addext 'subjectAltName=IP:127.0.0.1'";
constexpr const char* kOtherName =
    "/CN=elsewhere.test' -addext 'subjectAltName=DNS:elsewhere.test'";

}  // namespace

Certificates::Certificates() {
  Openssl("ecparam -name prime256v1 -genkey -noout -out key");
  authority_ = MakeAuthority("authority");
}

std::string Certificates::MakeAuthority(const std::string& name) const {
  return Openssl("req -x509 -key key -subj '/CN=Tests " + name + "' -days 9 -out " + name)
             ? folder_ / name
             : "";
}

std::string Certificates::For(Paper paper) const {
  const std::string made = "paper" + std::to_string(static_cast<int>(paper));
  const std::string subject = paper == Paper::OtherHost ? kOtherName : kOwnName;
  const std::string days = paper == Paper::Expired ? "-1" : "9";
  const std::string by = paper == Paper::Foreign ? "foreign" : "authority";
  if (paper == Paper::SelfSigned) {
    if (!Openssl("req -x509 -key key -days 9 -out " + made + " -subj '" + subject)) return "";
  } else {
    if (paper == Paper::Foreign && MakeAuthority("foreign").empty()) return "";
    if (!Openssl("req -new -key key -out request -subj '" + subject) ||
        !Openssl("x509 -req -in request -CA " + by + " -CAkey key -set_serial 0x" +
                 std::to_string(7 + static_cast<int>(paper)) + " -copy_extensions copy -days " +
                 days + " -out " + made)) {
      return "";
    }
  }
  return folder_.Write(made + ".pem", folder_.Read("key") + folder_.Read(made));
}

bool Certificates::Openssl(const std::string& words) const {
  return RunShell("cd " + folder_.Path() + " && openssl " + words + " 2>openssl.log >&2") == 0;
}

}  // namespace tavlo::test
