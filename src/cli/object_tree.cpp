#include "object_tree.h"

#include <algorithm>

#include "type_description.h"

namespace sabxml::cli {
namespace {

// Objects are read into each other; a file may nest them without limit, the stack does not.
constexpr int kDeepest = 400;

Json ReadObjectAt(IDispatch& object, const std::vector<std::string>& only, int depth);

bool IsSameName(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return lower(x) == lower(y);
  });
}

Json ReadCollection(IDispatch& collection, int depth) {
  Json items = Json::array();
  Value position = Call(collection, "GetHeadPosition", DISPATCH_METHOD);
  // A variable of the caller's that the method moves on, as scripts pass it.
  VARIANT& place = position.Get();
  for (;;) {
    VARIANT number;
    VariantInit(&number);
    if (FAILED(VariantChangeType(&number, &place, 0, VT_I8)) || number.llVal == 0) return items;
    Value reference;
    reference.Get().vt = VT_BYREF | VT_VARIANT;
    reference.Get().pvarVal = &place;
    std::vector<Value> arguments;
    arguments.push_back(std::move(reference));
    Value item = Call(collection, "GetNext", DISPATCH_METHOD, std::move(arguments));
    if (item.Get().vt == VT_DISPATCH && item.Get().pdispVal) {
      items.push_back(ReadObjectAt(*item.Get().pdispVal, {}, depth + 1));
    } else {
      items.push_back(nullptr);
    }
  }
}

Json ReadArray(SAFEARRAY* array) {
  Json texts = Json::array();
  LONG lower = 0;
  LONG upper = -1;
  if (!array || FAILED(SafeArrayGetLBound(array, 1, &lower)) ||
      FAILED(SafeArrayGetUBound(array, 1, &upper))) {
    return texts;
  }
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  for (LONG i = lower; i <= upper; ++i) {
    Value element;
    element.Get().vt = type;
    if (FAILED(SafeArrayGetElement(array, &i, &element.Get().byref))) continue;
    if (type == VT_BSTR) {
      texts.push_back(ToUtf8(element.Get().bstrVal));
    } else {
      VARIANT number;
      VariantInit(&number);
      if (SUCCEEDED(VariantChangeType(&number, &element.Get(), 0, VT_I8))) {
        texts.push_back(number.llVal);
      }
    }
  }
  return texts;
}

bool IsCollection(const std::vector<MemberDescription>& members) {
  const auto has = [&members](const char* name) {
    return std::any_of(members.begin(), members.end(),
                       [name](const MemberDescription& member) { return member.name == name; });
  };
  return has("GetHeadPosition") && has("GetNext") && has("AddTailColl");
}

Json ToJson(const VARIANT& value, int depth) {
  if ((value.vt & VT_ARRAY) != 0) return ReadArray(value.parray);
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return nullptr;
    case VT_BSTR:
      return ToUtf8(value.bstrVal);
    case VT_BOOL:
      // Files carry other numbers than -1 for true, and settings keep them.
      if (value.boolVal == VARIANT_TRUE || value.boolVal == VARIANT_FALSE) {
        return value.boolVal == VARIANT_TRUE;
      }
      return value.boolVal;
    case VT_R4:
      return value.fltVal;
    case VT_R8:
      return value.dblVal;
    case VT_DISPATCH:
      if (!value.pdispVal) return nullptr;
      if (depth >= kDeepest) return Json{{"error", "nested too deeply to be shown"}};
      return ReadObjectAt(*value.pdispVal, {}, depth + 1);
    default: {
      VARIANT number;
      VariantInit(&number);
      VARIANT source = value;
      if (FAILED(VariantChangeType(&number, &source, 0, VT_I8))) return nullptr;
      return number.llVal;
    }
  }
}

Json ReadObjectAt(IDispatch& object, const std::vector<std::string>& only, int depth) {
  Reference<ITypeInfo> info;
  const HRESULT result = object.GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put());
  if (FAILED(result)) Fail(result, "reading the type information");
  const std::vector<MemberDescription> members = DescribeMembers(*info.Get());
  if (IsCollection(members)) return ReadCollection(object, depth);
  Json out = Json::object();
  for (const MemberDescription& member : members) {
    if (!member.IsReadable()) continue;
    const bool is_wanted =
        only.empty() || std::any_of(only.begin(), only.end(), [&member](const std::string& name) {
          return IsSameName(name, member.name);
        });
    if (!is_wanted) continue;
    std::string name = member.name;
    if (member.kind == "method") name.erase(0, 3);  // Get
    try {
      const WORD flags = member.kind == "method" ? DISPATCH_METHOD : DISPATCH_PROPERTYGET;
      const Value value = Call(object, member.id, flags);
      out[name] = ToJson(value.Get(), depth);
    } catch (const Failure& failure) {
      out[name] = Json{{"error", failure.what()}};
    }
  }
  return out;
}

std::string ScalarText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
}

// Columns that a text takes: the ideographs of the files' own language are wide.
std::size_t WidthOf(const std::string& utf8) {
  std::size_t width = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80) width += byte >= 0xE3 && byte < 0xF0 ? 2 : 1;
  }
  return width;
}

class TreePrinter {
 public:
  TreePrinter(std::ostream& out, bool colours) : out_(out), colours_(colours) {}

  void Print(const Json& tree, const std::string& indentation) {
    std::size_t widest = 0;
    if (tree.is_object()) {
      for (const auto& [name, value] : tree.items()) {
        if (!value.is_structured() || value.empty()) widest = std::max(widest, WidthOf(name));
      }
    }
    std::size_t number = 0;
    for (const auto& [key, value] : tree.items()) {
      const std::string name = tree.is_array() ? "[" + std::to_string(number++) + "]" : key;
      out_ << indentation << Named(name);
      if (value.is_structured() && !value.empty()) {
        out_ << '\n';
        Print(value, indentation + "  ");
      } else {
        const std::size_t width = WidthOf(name);
        out_ << std::string(widest > width ? widest - width + 2 : 2, ' ')
             << (value.is_array() ? "(none)" : ScalarText(value)) << '\n';
      }
    }
  }

 private:
  std::string Named(const std::string& name) const {
    return colours_ ? "\x1b[36m" + name + "\x1b[0m" : name;
  }

  std::ostream& out_;
  bool colours_;
};

}  // namespace

Json ReadObject(IDispatch& object, const std::vector<std::string>& only) {
  return ReadObjectAt(object, only, 0);
}

void PrintTree(std::ostream& out, const Json& tree, bool colours) {
  TreePrinter(out, colours).Print(tree, {});
}

}  // namespace sabxml::cli
