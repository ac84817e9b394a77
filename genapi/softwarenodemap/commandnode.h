/// \file
/// The software node that does something.
#pragma once

#include <functional>

#include "genapi/softwarenodemap/softwarenode.h"

namespace ffc::genapi {

class CSoftwareCommand final : public CSoftwareNode<CSoftwareCommand, GenApi::ICommand> {
public:
  CSoftwareCommand(std::string strName, std::recursive_mutex &mutex) : CSoftwareNode(std::move(strName), mutex) {}

  /// Runs with the map's lock held. Undeclared: nothing happens.
  CSoftwareCommand &OnExecute(std::function<void()> fnExecute);
  /// Undeclared: every execution is over when it returns.
  CSoftwareCommand &Done(CValueOrCallback<bool> done);

  GenApi::EAccessMode GetAccessMode() const override;
  void Execute(bool bVerify = true) override;
  bool IsDone(bool bVerify = true) override;
  /// "1" when done, else "0".
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  /// Executes for "1"; "0" does nothing.
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  std::function<void()> m_fnExecute;
  CValueOrCallback<bool> m_done = true;
};

} // namespace ffc::genapi
