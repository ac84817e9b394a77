#include "genapi/softwarenodemap/commandnode.h"

#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::genapi {

CSoftwareCommand &CSoftwareCommand::OnExecute(std::function<void()> fnExecute)
{
  m_fnExecute = std::move(fnExecute);
  return *this;
}

CSoftwareCommand &CSoftwareCommand::Done(CValueOrCallback<bool> done)
{
  m_done = std::move(done);
  return *this;
}

GenApi::EAccessMode CSoftwareCommand::GetAccessMode() const
{
  const auto lock = m_guard.Acquire();
  return m_guard.GetAccess(GenApi::WO);
}

void CSoftwareCommand::Execute(bool bVerify)
{
  const auto lock = m_guard.Acquire();
  m_guard.CheckWritable(GetAccessMode(), bVerify, true);
  if (m_fnExecute) {
    m_fnExecute();
  }
}

bool CSoftwareCommand::IsDone(bool)
{
  const auto lock = m_guard.Acquire();
  m_guard.CheckAvailable(GetAccessMode());
  return m_done.Get();
}

GenICam::gcstring CSoftwareCommand::ToString(bool bVerify, bool)
{
  return FormatValue(IsDone(bVerify)).c_str();
}

void CSoftwareCommand::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  m_guard.CheckWritable(GetAccessMode(), bVerify, true);
  const auto bExecute = ParseValue<bool>(strValue.c_str());
  if (!bExecute) {
    m_guard.ThrowInvalidArgument("a command takes \"1\"");
  }
  if (*bExecute) {
    Execute(bVerify);
  }
}

} // namespace ffc::genapi
