/// \file
/// What a camera itself says of a feature.
#pragma once

#include <string>

namespace ffc::camera {

/// Nodes whose camera has words for them are this too; reached by a dynamic_cast from the node.
class IDescribedNode {
public:
  virtual ~IDescribedNode() = default;

  /// What the feature does, in a line or some, in the camera's language; empty: the camera does not say.
  virtual std::string GetToolTip() const = 0;
};

} // namespace ffc::camera
