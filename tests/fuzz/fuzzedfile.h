/// \file
/// A coefficient file that a fuzz target writes.
#pragma once

#include <cstddef>
#include <cstdint>

#include <QString>

#include "tests/fuzz/exactbuffer.h"
#include "tests/fuzz/fuzzinput.h"

/// Names in a folder of this program's own, which goes with it. The same file each time.
class CFuzzedFile {
public:
  static QString GetFileName();
  /// A folder, and a name that no file has.
  static QString GetFolderName();
  static QString GetMissingName();

  /// What a user may choose: the file nearly always.
  static QString TakeName(CFuzzInput &input);
  /// Replaces the file's content.
  static void Write(const CExactBuffer &content);

  /// Bytes to add to a size that fits: none, or a few either way.
  static std::size_t TakeSizeAround(CFuzzInput &input, std::size_t nFitting);
};
