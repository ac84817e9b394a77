/// \file
/// Access modes and their predicates.
#pragma once

namespace GenApi_3_0 {

/// How a node can be accessed at this moment.
enum EAccessMode {
  NI = 0, ///< not implemented
  NA = 1, ///< implemented, not available now
  WO = 2, ///< write only
  RO = 3, ///< read only
  RW = 4, ///< read and write
  _UndefinedAccesMode,
  _CycleDetectAccesMode
};

inline bool IsImplemented(EAccessMode eMode)
{
  return eMode != NI;
}
inline bool IsAvailable(EAccessMode eMode)
{
  return eMode == WO || eMode == RO || eMode == RW;
}
inline bool IsReadable(EAccessMode eMode)
{
  return eMode == RO || eMode == RW;
}
inline bool IsWritable(EAccessMode eMode)
{
  return eMode == WO || eMode == RW;
}

} // namespace GenApi_3_0
