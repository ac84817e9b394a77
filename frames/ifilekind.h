/// \file
/// The kinds of files that frames are kept in.
#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "frames/frameinfo.h"
#include "platform/result.h"

namespace ffc::frames {

/// How a file is put in its place.
enum class ECommit {
  Quick,   ///< as fast as it was written: after a loss of power a new file may be there without its content
  Durable, ///< when its content is on the disk
};

/// Reads the frames of one file, one after the other: memory does not grow with their number. Used by one thread at a
/// time. Messages are the ends of sentences that begin with the file's name.
class IFrameReader {
public:
  virtual ~IFrameReader() = default;

  virtual const SFrameInfo &GetInfo() const = 0;
  /// Reads the next frame; as often as there are frames.
  /// \param pFrame room for stLayout.GetFrameSize() bytes
  /// \param pTexts the texts of this frame; may be null
  virtual Result<> Read(void *pFrame, Texts *pTexts = nullptr) = 0;
  /// Lets the file go, so that another one can take its place. Nothing is read after it.
  virtual void Close() = 0;
};

/// Writes the frames of one file, which is there only when all of them are. Used by one thread at a time. Messages name
/// the file.
class IFrameWriter {
public:
  /// Without Commit, nothing is left of what was written, and a former file stays.
  virtual ~IFrameWriter() = default;

  /// Writes the next frame; as often as there are frames.
  /// \param pFrame stLayout.GetFrameSize() bytes
  /// \param mapTexts of this frame
  virtual Result<> Write(const void *pFrame, const Texts &mapTexts) = 0;
  /// Puts the file in its place, in place of a former one. Once, after the last frame.
  virtual Result<> Commit(ECommit eCommit = ECommit::Quick) = 0;
};

/// Reads and writes files of one kind. Has no state that changes; on any thread.
class IFileKind {
public:
  virtual ~IFileKind() = default;

  /// What people call it.
  virtual QString GetName() const = 0;
  /// Endings of file names, in lower case, without the dot.
  virtual QStringList GetSuffixes() const = 0;
  /// Whether this program was built with what it takes to read and write such files; without it, both fail.
  virtual bool IsSupported() const { return true; }
  /// Whether a file has a place for texts.
  virtual bool KeepsTexts() const = 0;
  /// Most frames that one file takes.
  virtual uint64_t GetMaxFrames() const { return UINT64_MAX; }
  /// \return why it cannot be read as the end of a sentence that begins with the file's name
  virtual Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const = 0;
  /// \param stInfo what the file will hold
  virtual Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const = 0;
};

/// All kinds that this program reads and writes.
const std::vector<const IFileKind *> &ListFileKinds();

/// The kind that the ending of the name says, in upper or lower case, supported or not; null for another ending.
const IFileKind *FindFileKind(const QString &strPath);

/// Writes one frame into a file of its own, of the kind that the ending says.
Result<> SaveFrame(const QString &strPath, const SLayout &stLayout, const void *pFrame);

} // namespace ffc::frames
