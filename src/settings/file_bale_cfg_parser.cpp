#include "settings/file_bale_cfg_parser.h"

#include "base/com_error.h"

namespace sab {
namespace {

constexpr char kSetFailed[] = "A set of the packing of files could not be read or filled.";

// The sets may be objects of the host's own, so they are only known by their interface.
ComPtr<IVePrsFileBaleSet> SetFrom(const ConfigElement& element, ComponentCreator& creator) {
  auto set = creator.Create<coclass::VePrsFileBaleSet>();
  Text text;
  Check(set->put_Name(Bstr(element.ReadLocalName(text)).Get()), kSetFailed);
  NamedValues values;
  std::vector<ConfigElement> children;
  for (const ConfigElement child : element.Children()) children.push_back(child);
  values.Read(children);
  for (std::size_t i = 0; i < values.Count(); ++i) {
    Check(set->put_Value(Bstr(values.NameAt(i)).Get(), Bstr(values.ValueAt(i)).Get()), kSetFailed);
  }
  return set;
}

void Write(IVePrsFileBaleSet& set, ConfigElement& node) {
  Bstr name;
  INT count = 0;
  Check(set.get_Name(name.Put()), kSetFailed);
  Check(set.get_ValueCount(&count), kSetFailed);
  AppendedElement element = node.Append(ToUtf8(name.View()));
  for (INT i = 0; i < count; ++i) {
    Bstr value_name;
    Bstr value;
    Check(set.get_ValueName(i, value_name.Put()), kSetFailed);
    Check(set.get_Value(value_name.Get(), value.Put()), kSetFailed);
    element.Append(ToUtf8(value_name.View()), value.View());
  }
}

}  // namespace

void FileBaleCfgFields::WriteMore(ConfigElement& node) {
  LONG_PTR position = 0;
  Check(FileBales->GetHeadPosition(&position), kSetFailed);
  while (position != 0) {
    ComPtr<IVePrsFileBaleSet> set;
    Check(FileBales->GetNext(&position, set.Put()), kSetFailed);
    if (set) Write(*set, node);
  }
}

void FileBaleCfgFields::ReadMore(const std::vector<ConfigElement>& elements) {
  ComponentCreator creator;
  std::vector<ComPtr<IVePrsFileBaleSet>> sets;
  for (const ConfigElement& element : elements) {
    if (!IsLeaf(element)) sets.push_back(SetFrom(element, creator));
  }
  if (sets.empty()) return;
  // The old sets go when all new ones are there, which without memory they never are.
  ULONG_PTR old_sets = 0;
  Check(FileBales->GetCount(&old_sets), kSetFailed);
  for (std::size_t i = 0; i < sets.size(); ++i) {
    const HRESULT result = FileBales->AddTail(sets[i].Get(), nullptr);
    for (; FAILED(result) && i > 0; --i) FileBales->RemoveTailNoReturn();
    Check(result, kSetFailed);
  }
  for (; old_sets > 0; --old_sets) Check(FileBales->RemoveHeadNoReturn(), kSetFailed);
}

}  // namespace sab
