#pragma once

#include "base/interface_info.h"

namespace sab {

INVOKEKIND InvokeKindOf(const MemberInfo& member);

/// The interface that another one inherits its first members from. The last one has those of
/// IUnknown and IDispatch, which are restricted; null after it.
const InterfaceInfo* BaseOf(const InterfaceInfo& interface_);

/// Describes a member as a dispatch interface has it.
/// @param slot its number in the table of virtual functions
/// @throws std::bad_alloc
FUNCDESC* NewFunctionDescription(const MemberInfo& member, std::size_t slot);
void DeleteFunctionDescription(FUNCDESC* description) noexcept;

}  // namespace sab
