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
  if (channel.FtpConnected) channel.edges.client.fceClose();
  if (FtpLibraryAttached) channel.edges.client.fceRelease();
  FtpLibraryAttached = false;
}

}  // namespace tavlo::ftp
