#pragma once

namespace tavlo::conversion {

/// What a conversion library returns. The numbers are shown to the user, and the guide says
/// what each means, so none is ever given another meaning. Whatever is no success has left the
/// source as it was, no wave at the destination and nothing beside it; what stood at the
/// destination before still stands there. Only at WriteFailed a whole wave may stand there: its
/// folder could not be flushed behind it.
enum class ConversionCode : int {
  Done = 0,  ///< The wave stands at the destination, whole and flushed to the disk.

  // The files.
  NotFound = 1,      ///< There is no such source.
  NotPlainFile = 2,  ///< The source is a folder, a link, a pipe or a device.
  NotPermitted = 3,  ///< This user may not read the source.
  ReadFailed = 4,    ///< The disk failed while the source was read.
  /// The second success, of the mu-law library alone: the source had a wave header already and was
  /// taken as it is.
  HadHeader = 5,
  SourceChanged = 6,  ///< Somebody wrote into the source meanwhile; try again later.
  SameFile = 7,       ///< Both paths name one file, which would be lost.
  CannotCreate = 8,   ///< Nothing can be created in the folder of the destination.
  WriteFailed = 9,    ///< The disk failed while the wave was written, flushed or renamed.
  DiskFull = 10,      ///< The disk, or the user's share of it, is full.
  TooLong = 11,       ///< More sound than a wave can hold, which is 4 GB.
  NoMemory = 12,      ///< The process has no memory or no file handles left.
  BadCall = 13,       ///< A path is missing, or is none of a file.

  // The recordings, of the DSS libraries alone.
  NotDss = 20,          ///< Nothing that is known to be a dictation of this family.
  UnknownVersion = 21,  ///< DSS, but with a header of a size that is not known.
  Ds2 = 22,             ///< The later format, DS2, which is not decoded.
  OtherMaker = 23,      ///< A header of version 6: the coding of another maker.
  Encrypted = 24,       ///< Locked with a password.
  UnknownCoding = 25,   ///< Neither standard play nor long play.
  Damaged = 26,         ///< The blocks contradict themselves.
  CutOff = 27,          ///< Shorter than its own header says: the rest is missing.
  DecodeFailed = 28,    ///< The decoder refused the sound.
  NoDecoder = 29,       ///< FFmpeg on this machine lacks the decoder.

  // The program itself, where no library could be asked.
  LibraryMissing = 40,  ///< The library is not in the root.
  LibraryBroken = 41,   ///< It can not be loaded, or lacks the call.
};

}  // namespace tavlo::conversion
