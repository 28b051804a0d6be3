#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hostile/mutations.h"
#include "support/driven_program.h"

/// What the programs do alike that are given documents which were made to do harm.
namespace tavlo::test {

/// Asks for a file that does not exist, so that whoever listens to the system calls knows which
/// document the next ones may open.
void Mark(const std::string& what);

/// All files of a folder, by their names.
std::vector<Original> ReadOriginals(const std::string& folder);

/// The most memory that this process ever had; -1 when that is not known.
long PeakKilobytes();

/// What this thread, or this process, has computed so far: a hang is told from a busy machine.
long ComputedMilliseconds();
long ComputedMillisecondsOfAll();

/// Runs a call on the program's thread without waiting for it, since it may open a box.
std::shared_ptr<std::atomic<bool>> Post(std::function<void()> call);
/// Answers the box that is open with OK. False when none is.
bool CloseBox(DrivenProgram& program);

}  // namespace tavlo::test
