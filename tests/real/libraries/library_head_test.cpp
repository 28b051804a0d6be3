#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/libraries/patient_libraries.h"
#include "support/errands_at_hand.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::PatientLibraries;
using store::LibraryFit;

/// A library that was built for this machine, and what becomes of it.
struct LibraryHead : testing::Test {
  LibraryHead() {
    std::ifstream file(TAVLO_LIBRARY, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
  }

  LibraryFit FitOf(const std::string& contents) {
    return inspector.Inspect(folder.Write("PedalWatch.so", contents));
  }
  /// The library, one byte of its head changed.
  LibraryFit FitWith(std::size_t at, int byte) {
    std::string changed = bytes;
    changed.at(at) = static_cast<char>(byte);
    return FitOf(changed);
  }

  TemporaryFolder folder;
  ErrandsAtHand errands;
  PatientLibraries inspector{errands};
  std::string bytes;
};

TEST_F(LibraryHead, LibraryForThisMachineFits) {
  EXPECT_EQ(inspector.Inspect(TAVLO_LIBRARY), LibraryFit::Fits);
  EXPECT_EQ(FitOf(bytes), LibraryFit::Fits);
}

TEST_F(LibraryHead, LinkIsFollowed) {
  std::filesystem::create_symlink(TAVLO_LIBRARY, folder / "link.so");
  EXPECT_EQ(inspector.Inspect(folder / "link.so"), LibraryFit::Fits);
}

TEST_F(LibraryHead, LibraryOfAnotherKindOfProcessorIsForeign) {
  EXPECT_EQ(FitWith(offsetof(Elf64_Ehdr, e_machine), EM_S390), LibraryFit::Foreign);
  EXPECT_EQ(FitWith(EI_CLASS, ELFCLASSNONE), LibraryFit::Foreign);
  EXPECT_EQ(FitWith(EI_DATA, ELFDATANONE), LibraryFit::Foreign);
}

TEST_F(LibraryHead, WhatIsNoLibraryIsForeign) {
  EXPECT_EQ(FitOf("MZ" + std::string(5000, '\1')), LibraryFit::Foreign);
  EXPECT_EQ(FitWith(offsetof(Elf64_Ehdr, e_type), ET_REL), LibraryFit::Foreign);
  EXPECT_EQ(FitOf(bytes.substr(0, sizeof(Elf64_Ehdr) - 1)), LibraryFit::Foreign);
  EXPECT_EQ(FitOf(""), LibraryFit::Foreign);
}

TEST_F(LibraryHead, OfNoPlainFileNothingIsKnown) {
  EXPECT_EQ(inspector.Inspect(folder / "missing.so"), LibraryFit::NotKnown);
  EXPECT_EQ(inspector.Inspect(folder.Path()), LibraryFit::NotKnown);
  ASSERT_EQ(::mkfifo((folder / "pipe.so").c_str(), 0600), 0);
  EXPECT_EQ(inspector.Inspect(folder / "pipe.so"), LibraryFit::NotKnown);
}

TEST_F(LibraryHead, OfAPlaceThatGivesNoAnswerNothingIsKnown) {
  errands.Stalls = true;
  EXPECT_EQ(inspector.Inspect(TAVLO_LIBRARY), LibraryFit::NotKnown);
  errands.ComeBack();
  EXPECT_EQ(inspector.Inspect(TAVLO_LIBRARY), LibraryFit::Fits);
}

}  // namespace
}  // namespace tavlo::test
