/// \file
/// A camera's own description of a feature.
#pragma once

#include <string>

namespace ffc::camera {

/// Implemented by nodes whose camera describes them; reached by a dynamic_cast from the node.
class IDescribedNode {
public:
  virtual ~IDescribedNode() = default;

  /// What the feature does, in a line or some, in the camera's language; empty: the camera does not say.
  virtual std::string GetToolTip() const = 0;
};

} // namespace ffc::camera
