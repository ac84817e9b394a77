/// \file
/// A hook that keeps a readable log.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "genapi/softwarenodemap/nodeaccess.h"

namespace ffc::test {

/// Lines such as "implemented? BalanceWhiteAuto", "get ExposureTime", "set TriggerMode = Off",
/// "execute TriggerSoftware", "read FFCValueAll 128", "write FFCValueAll 128", "entries PixelFormat".
/// Give it to a map with std::ref: it must outlive the map. Any thread.
class CAccessRecorder {
public:
  enum class EDetail {
    Values, ///< what is read, written, executed or asked to be implemented
    All,    ///< also "find X", "limit X", "done? X", "length X", "implemented? X.Entry", "get X.Entry"
  };

  explicit CAccessRecorder(EDetail eDetail = EDetail::Values) : m_eDetail(eDetail) {}

  void operator()(const genapi::SNodeAccess &stAccess);

  /// A copy, in the order of the accesses.
  std::vector<std::string> GetLog() const;
  void Clear();

private:
  EDetail m_eDetail;
  mutable std::mutex m_mutex;
  std::vector<std::string> m_listLines;
};

} // namespace ffc::test
