#pragma once

#include <vector>

#include "common/named_value_fields.h"
#include "object/component.h"

namespace sab {

/// A settings group whose keys are those of its file: it keeps every element under the node path
/// that has no elements of its own, and saves them there as new elements.
struct NamedValueSettings : NamedValueFields {
  virtual ~NamedValueSettings() = default;

  void Save(TextView file, TextView node_path);
  void Load(TextView file, TextView node_path);

 protected:
  // What a group keeps beside its values.
  virtual void WriteMore(ConfigElement&) {}
  virtual void ReadMore(const std::vector<ConfigElement>&) {}
};

using CVeDWGInterfaceCfgParser = Component<coclass::VeDWGInterfaceCfgParser, NamedValueSettings>;
using CVeFileAttributeCfgParser = Component<coclass::VeFileAttributeCfgParser, NamedValueSettings>;
using CVeProductCfgParser = Component<coclass::VeProductCfgParser, NamedValueSettings>;
using CVeSmartPosCfgParser = Component<coclass::VeSmartPosCfgParser, NamedValueSettings>;
using CVeSmartPosParaParser = Component<coclass::VeSmartPosParaParser, NamedValueSettings>;
using CVeBomcfgParser = Component<coclass::VeBomcfgParser, NamedValueSettings>;
using CVeStdMgrCfgParser = Component<coclass::VeStdMgrCfgParser, NamedValueSettings>;
using CVeCustomPTParser = Component<coclass::VeCustomPTParser, NamedValueSettings>;

/// Lines of projected views.
struct ProjectionCfgFields : NamedValueSettings {
  /// A value as a kind of line. Raises ComError(E_INVALIDARG) where it is none.
  ProjectionLineType LineType(TextView name) const;
  void SetLineType(TextView name, ProjectionLineType type);
};
using CVeProjectionCfgParser = Component<coclass::VeProjectionCfgParser, ProjectionCfgFields>;

}  // namespace sab
