#include "ftp/ftp.h"

namespace tavlo::ftp {

Ftp::Ftp(const Edges& edges, forms::ConfigurationForm& config)
    : channel(edges),
      lists(channel),
      connection(channel, lists),
      download(channel),
      autoRetrieve(channel, config) {}

void Ftp::Attach() {
  FtpLibraryAttached = channel.edges.client.fceAttach(1) >= 0;
  if (!FtpLibraryAttached) channel.Display("Cannot attach to FTP Client Module");
}

void Ftp::End() {
  channel.End();
  download.tmrFtpDownload.Stop();
  autoRetrieve.tmrFtpAutoRetrieve.Stop();
}

void Ftp::Release() {
  End();
  // The session may end in the waits of an exit, behind which the exit comes here, too.
  if (!FtpLibraryAttached) return;
  // Where the session ends while a rule waits for the server the client is to be let go of at once.
  if (channel.FtpConnected && !channel.Waits()) channel.edges.client.fceClose();
  channel.edges.client.fceRelease();
  FtpLibraryAttached = false;
}

}  // namespace tavlo::ftp
