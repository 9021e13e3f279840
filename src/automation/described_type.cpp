#include "automation/described_type.h"

#include <algorithm>
#include <iterator>

namespace sab {
namespace {

// In the order of the IndexOf functions.
const ForeignType kForeignTypes[] = {
    {OLESTR("IDispatch"), IID_IDispatch, TKIND_INTERFACE},
    {OLESTR("GUID"), {}, TKIND_RECORD},
    {OLESTR("DISPPARAMS"), {}, TKIND_RECORD},
    {OLESTR("EXCEPINFO"), {}, TKIND_RECORD},
};

}  // namespace

UINT DescribedType::Count() {
  const LibraryInfo& library = TheLibrary();
  return static_cast<UINT>(library.enumerations.size() + library.interfaces.size() +
                           library.coclasses.size());
}

UINT DescribedType::CountReferred() {
  return Count() + static_cast<UINT>(std::size(kForeignTypes));
}

DescribedType DescribedType::At(UINT index) {
  if (index >= Count()) return {nullptr, nullptr, nullptr, &kForeignTypes[index - Count()]};
  const LibraryInfo& library = TheLibrary();
  std::size_t i = index;
  if (i < library.enumerations.size()) return {library.enumerations[i], nullptr, nullptr, nullptr};
  i -= library.enumerations.size();
  if (i < library.interfaces.size()) return {nullptr, library.interfaces[i], nullptr, nullptr};
  return {nullptr, nullptr, &library.coclasses[i - library.interfaces.size()], nullptr};
}

UINT DescribedType::IndexOf(const InterfaceInfo* interface_) {
  UINT index = 0;
  while (At(index).interface_ != interface_) ++index;
  return index;
}

UINT DescribedType::IndexOf(const EnumerationInfo* enumeration) {
  UINT index = 0;
  while (At(index).enumeration != enumeration) ++index;
  return index;
}

UINT DescribedType::IndexOfDispatch() { return Count(); }
UINT DescribedType::IndexOfGuid() { return Count() + 1; }
UINT DescribedType::IndexOfDispParams() { return Count() + 2; }
UINT DescribedType::IndexOfExcepInfo() { return Count() + 3; }

TYPEKIND DescribedType::Kind() const {
  if (foreign) return foreign->kind;
  return enumeration ? TKIND_ENUM : interface_ ? TKIND_DISPATCH : TKIND_COCLASS;
}

const OLECHAR* DescribedType::Name() const {
  if (foreign) return foreign->name;
  return enumeration ? enumeration->name : interface_ ? interface_->name : coclass->name;
}

const char* DescribedType::Help() const {
  if (foreign) return "";
  return enumeration ? enumeration->help : interface_ ? interface_->help : coclass->help;
}

GUID DescribedType::Guid() const {
  if (foreign) return foreign->guid;
  return enumeration ? *enumeration->guid : interface_ ? *interface_->iid : *coclass->clsid;
}

}  // namespace sab
