#pragma once

#include <string>
#include <vector>

#include "forms/main_form.h"

namespace tavlo::test {

/// Writes into a form what stands in it in each state of the Ftp view, for those who look at it.
class FtpStates {
 public:
  explicit FtpStates(forms::MainForm& form) : form_(form) {}

  /// The view shows, no server is connected.
  void Idle();
  void Connecting();
  void Connected();
  void Listed(const std::vector<std::string>& names);
  /// So many of the names, from the first on, are chosen to be fetched.
  void Chosen(std::size_t names);
  /// The first of the chosen files comes, and so much of it is there.
  void Downloading(const std::string& byteCount);
  void Halting();
  void ConnectionLost();
  /// What was fetched is sorted.
  void Sorting();

  /// What a typist finds on a server.
  static const std::vector<std::string>& UsualNames();
  /// Long ones, ones from right to left, and bytes that are no text.
  static std::vector<std::string> TroublesomeNames();

 private:
  void Say(const std::string& words);
  void ExplainEmptyList(const std::string& words);
  void FillLists();
  void SetHidden(bool hidden);

  forms::MainForm& form_;
  std::vector<std::string> names_;
  std::size_t chosen_ = 0;
};

}  // namespace tavlo::test
