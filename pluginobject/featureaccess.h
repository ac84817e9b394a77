/// \file
/// Camera features by name and type, with status codes instead of exceptions.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

namespace ffc::pluginobject {

/// Typed access to the features of one node map.
///
/// Every operation returns 0; PLUGIN_STATUS_INVALID_PARAM for a missing name, buffer or feature;
/// PLUGIN_STATUS_FEATURE_ERROR for a feature of another type, an enumeration without a current entry, or
/// anything that the node map throws; PLUGIN_STATUS_ROI_MISMATCH for a register of another length. None
/// throws. Outputs are written on success only. There is no retry and no lock of its own.
///
/// Copies share their node map: what one of them lets go, none of them has any more.
class CFeatureAccess {
public:
  /// \param pNodeMap not owned; with null no feature is found
  explicit CFeatureAccess(GenApi::INodeMap *pNodeMap) : m_ppNodeMap(std::make_shared<GenApi::INodeMap *>(pNodeMap)) {}

  bool HasNodeMap() const { return *m_ppNodeMap != nullptr; }
  /// Lets the node map go, in all copies, before its owner destroys it. On the thread of the accesses.
  void Detach() { *m_ppNodeMap = nullptr; }

  /// Whether the feature exists and is implemented. A missing feature is no failure; a null name is, and
  /// also answers false.
  [[nodiscard]] int32_t IsFeatureImplemented(const char *pName, bool &bImplemented) const;
  /// Whether the feature exists and can be written now.
  [[nodiscard]] int32_t IsFeatureWritable(const char *pName, bool &bWritable) const;

  [[nodiscard]] int32_t GetIntFeature(const char *pName, int64_t &nValue) const;
  [[nodiscard]] int32_t SetIntFeature(const char *pName, int64_t nValue) const;
  [[nodiscard]] int32_t GetFloatFeature(const char *pName, float &fValue) const;
  [[nodiscard]] int32_t SetFloatFeature(const char *pName, float fValue) const;
  /// Writes a value back that was read as a float. A limit of the feature that no float has, such as 24.1, was read as
  /// one beyond it: the limit itself is written then.
  [[nodiscard]] int32_t RestoreFloatFeature(const char *pName, float fValue) const;
  [[nodiscard]] int32_t GetBoolFeature(const char *pName, bool &bValue) const;
  [[nodiscard]] int32_t SetBoolFeature(const char *pName, bool bValue) const;

  /// Symbolic name of the current entry.
  [[nodiscard]] int32_t GetEnumFeature(const char *pName, std::string &strValue) const;
  /// Integer value of the current entry.
  [[nodiscard]] int32_t GetEnumIntFeature(const char *pName, int64_t &nValue) const;
  [[nodiscard]] int32_t SetEnumFeature(const char *pName, std::string strValue) const;
  /// Symbolic names of the implemented and available entries, in the node map's order.
  [[nodiscard]] int32_t GetEnumEntries(const char *pName, std::vector<std::string> &listEntries) const;

  [[nodiscard]] int32_t GetStringFeature(const char *pName, std::string &strValue) const;
  [[nodiscard]] int32_t SetStringFeature(const char *pName, std::string strValue) const;

  /// Length of a register in bytes.
  [[nodiscard]] int32_t GetRegisterLength(const char *pName, int64_t &nLength) const;
  /// \param nLength must be the register's length
  [[nodiscard]] int32_t ReadRegisterFeature(const char *pName, uint8_t *pBuffer, int64_t nLength) const;
  [[nodiscard]] int32_t WriteRegisterFeature(const char *pName, const uint8_t *pBuffer, int64_t nLength) const;

  [[nodiscard]] int32_t ExecuteCommand(const char *pName) const;

private:
  std::shared_ptr<GenApi::INodeMap *> m_ppNodeMap;
};

} // namespace ffc::pluginobject
