/// \file
/// Adapter of the node that does something.
#pragma once

#include "camera/aravis/nodemap/aravisnode.h"

namespace ffc::camera {

class CAravisCommand final : public CAravisNode<GenApi::ICommand> {
public:
  CAravisCommand(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  void Execute(bool bVerify = true) override;
  /// The library does not know it: done when what the command is written to can be read and reads differently, or
  /// cannot be read.
  bool IsDone(bool bVerify = true) override;
  /// "1" when done, else "0".
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  /// Executes for "1"; "0" does nothing.
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  int64_t AskCommandValue() const;

  ArvGcCommand *m_pCommand;
};

} // namespace ffc::camera
