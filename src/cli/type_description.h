#pragma once

#include <string>
#include <vector>

#include "automation.h"

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

struct ClassDescription {
  std::string name;
  std::string clsid;
  std::string help;
  std::string interface_name;
  std::vector<MemberDescription> members;
};

/// The name of an interface or class.
std::string NameOf(ITypeInfo& info);

/// The members of an interface without those of IUnknown and IDispatch. Raises Failure.
std::vector<MemberDescription> DescribeMembers(ITypeInfo& info);

/// Every class of a type library, in its order. Raises Failure.
std::vector<ClassDescription> DescribeClasses(ITypeLib& library);

}  // namespace sabxml::cli
