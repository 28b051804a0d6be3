#pragma once

#include <QStringList>
#include <string>

namespace tavlo::platform::desktop {

/// Has the desktop's file manager show a folder and does not wait for it. `folder` is a full path
/// of bytes. False when there is nothing on the search path that would start. A desktop that takes
/// the folder and then shows nothing is not found out.
///
/// Programs are looked for in the `usual` folders first, since one of the search path may lie on a
/// server that gives no answer.
bool OpenFolder(const std::string& folder,
                const QStringList& usual = {"/usr/bin", "/usr/local/bin"});

}  // namespace tavlo::platform::desktop
