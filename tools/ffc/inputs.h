/// \file
/// Which files a command works on.
#pragma once

#include <string>
#include <vector>

#include <QStringList>

#include "platform/result.h"
#include "tools/ffc/options.h"

namespace ffc::tool {

/// Files behind names of files, folders (their frames, by name) and patterns, each once, in this order.
/// \param bRaw whether raw files are meant, which may have any ending
/// \return a failure for a name behind which there is nothing
Result<QStringList> ListFiles(const std::vector<std::string> &listNames, bool bRaw);

/// The files of a command with --files-from and --shard applied: every N-th file, beginning with the I-th.
Result<QStringList> ListInputs(const SOptions &stOptions);

/// The kind of a file: raw where the command says so, else what the ending says; null for an ending that no kind has.
const frames::IFileKind *FindKind(const QString &strPath, const SOptions &stOptions);

/// Opens a file of frames.
/// \return a sentence that names the file
Result<std::unique_ptr<frames::IFrameReader>> OpenFrames(const QString &strPath, const SOptions &stOptions);

/// "The file "x.tif" has ...", from the end of the sentence.
QString MakeSentence(const QString &strFile, const std::string &strEnd);

} // namespace ffc::tool
