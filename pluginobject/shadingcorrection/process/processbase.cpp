#include "pluginobject/shadingcorrection/process/processbase.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;
using pluginobject::MakePluginMsg;

CProcessBase::CProcessBase(const CFeatureAccess &deviceFeatures, bool bBlackLevelDefault)
  : m_deviceFeatures(deviceFeatures), m_bBlackLevelDefault(bBlackLevelDefault),
    m_pFileChooser(std::make_unique<CFileDialogChooser>())
{
}

CProcessBase::~CProcessBase() = default;

void CProcessBase::StartStream()
{
  emit SigAcquisitionStatusChanged(MakePluginMsg(PLUGIN_MSG_ACQUISITION_ON));
}

void CProcessBase::StopStream()
{
  emit SigAcquisitionStatusChanged(MakePluginMsg(PLUGIN_MSG_ACQUISITION_OFF));
}

} // namespace ffc::process
