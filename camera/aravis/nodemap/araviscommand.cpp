#include "camera/aravis/nodemap/araviscommand.h"

#include "camera/aravis/nodemap/nodeaccessmode.h"
#include "camera/aravis/nodemap/nodelinks.h"
#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::camera {

CAravisCommand::CAravisCommand(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisNode(pNode, std::move(strName), state), m_pCommand(ARV_GC_COMMAND(pNode))
{
}

void CAravisCommand::Execute(bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  m_core.Call([this](GError **ppError) { arv_gc_command_execute(m_pCommand, ppError); });
}

bool CAravisCommand::IsDone(bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  ArvGcFeatureNode *pValueNode =
    m_core.Call([this](GError **ppError) { return FindValueNode(ARV_GC_FEATURE_NODE(m_pCommand), ppError); });
  if (!ARV_IS_GC_INTEGER(pValueNode)) {
    return true;
  }
  const auto eMode = m_core.Call([&](GError **ppError) { return AskAccessMode(pValueNode, ppError); });
  if (!GenApi::IsReadable(eMode)) {
    return true;
  }
  const int64_t nValue =
    m_core.Call([&](GError **ppError) { return arv_gc_integer_get_value(ARV_GC_INTEGER(pValueNode), ppError); });
  return nValue != AskCommandValue();
}

GenICam::gcstring CAravisCommand::ToString(bool bVerify, bool)
{
  return genapi::FormatValue(IsDone(bVerify)).c_str();
}

void CAravisCommand::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  const auto bExecute = genapi::ParseValue<bool>(strValue.c_str());
  if (!bExecute) {
    m_core.Guard().ThrowInvalidArgument("a command takes \"1\"");
  }
  if (*bExecute) {
    Execute(bVerify);
  }
}

int64_t CAravisCommand::AskCommandValue() const
{
  ArvGcPropertyNode *pValue = FindProperty(ARV_DOM_NODE(m_pCommand), ARV_GC_PROPERTY_NODE_TYPE_COMMAND_VALUE);
  if (pValue == nullptr) {
    pValue = FindProperty(ARV_DOM_NODE(m_pCommand), ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE);
  }
  if (pValue == nullptr) {
    m_core.Guard().ThrowRuntime("command has no value");
  }
  return m_core.Call([pValue](GError **ppError) { return arv_gc_property_node_get_int64(pValue, ppError); });
}

} // namespace ffc::camera
