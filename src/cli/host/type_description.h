#pragma once

#include <string>
#include <vector>

#include "cli/host/automation.h"

namespace sabxml::cli {

struct ParameterDescription {
  std::string name;
  std::string type;
  bool is_in = false;
  bool is_out = false;
  bool is_optional = false;
};

struct MemberDescription {
  DISPID id = 0;
  std::string kind;  ///< "method", "get", "put"
  std::string name;
  std::string help;
  std::string result;  ///< type; empty if there is none
  std::vector<ParameterDescription> parameters;

  std::string Signature() const;
  std::size_t InputCount() const;  ///< of parameters that the caller must give
};

/// A class with the members of its interface, or an interface.
struct ClassDescription {
  std::string name;
  std::string identifier;
  std::string registered_identifier;  ///< where it is another; else empty
  std::string help;
  std::string interface_name;  ///< empty for an interface
  std::vector<MemberDescription> members;
};

/// The name of an interface or class.
std::string NameOf(ITypeInfo& info);

/// The members of an interface without those of IUnknown and IDispatch. Raises Failure.
std::vector<MemberDescription> DescribeMembers(ITypeInfo& info);

/// Every class of a type library, in its order. Raises Failure.
std::vector<ClassDescription> DescribeClasses(ITypeLib& library);
/// The same of its interfaces.
std::vector<ClassDescription> DescribeInterfaces(ITypeLib& library);

}  // namespace sabxml::cli
