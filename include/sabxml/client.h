#pragma once

/// What a C++ program writes around every call of a component: owning pointers and strings, result
/// codes as exceptions, lists as ranges. Header only, C++17, for Windows and elsewhere; the
/// interfaces are in <SabXmlParser.h>, and nothing in the library needs this header.
///
///     sabxml::Apartment apartment;
///     auto app = sabxml::Create<IVeAppParser>();
///     sabxml::Check(app->put_ConfigurationPath(sabxml::String("application.xml")));
///     sabxml::Check(app->GenerateApp());
///     std::string product = sabxml::Get(app, &IVeAppParser::GetProductName);
///
/// Texts are UTF-8 on the program's side.

#include <sabxml/com_ptr.h>
#include <sabxml/result_codes.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace sabxml {

// The generated header says it for every class.
template <class Interface>
struct ClassId;

/// A call that failed.
class Error : public std::exception {
 public:
  Error(HRESULT code, std::string source, std::string description)
      : code_(code), source_(std::move(source)), description_(std::move(description)) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "0x%08lX",
                  static_cast<unsigned long>(code) & 0xFFFFFFFFUL);
    const std::string words =
        description_.empty() ? WordsOf(static_cast<std::uint32_t>(code)) : description_;
    what_ = words.empty() ? "error " + std::string(digits) : words + " (" + digits + ")";
  }

  HRESULT code() const { return code_; }
  /// The class that failed, as its ProgID without a version; empty when the object has not said it.
  const std::string& source() const { return source_; }
  /// What failed and where; empty when the object has not said it.
  const std::string& description() const { return description_; }
  /// The description, or what the code means, and the code.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  HRESULT code_;
  std::string source_;
  std::string description_;
  std::string what_;
};

/// Owns an automation string. It may be passed wherever a BSTR is expected.
class String {
 public:
  String() = default;
  /// From UTF-8. Throws Error with E_INVALIDARG for other bytes and E_OUTOFMEMORY.
  explicit String(std::string_view utf8);
  String(const String&) = delete;
  String(String&& other) noexcept : string_(other.Detach()) {}
  ~String() { SysFreeString(string_); }
  String& operator=(String other) noexcept {
    std::swap(string_, other.string_);
    return *this;
  }

  BSTR Get() const { return string_; }
  operator BSTR() const { return string_; }
  /// The place where a callee stores a new string; what was held before is freed.
  BSTR* Put() {
    *this = String();
    return &string_;
  }
  /// Hands the string to the caller, who frees it.
  BSTR Detach() { return std::exchange(string_, nullptr); }

  /// As UTF-8; a null string is an empty one.
  std::string Utf8() const { return Utf8Of(string_); }
  /// The same of a string that is not owned. An unpaired surrogate becomes U+FFFD.
  static std::string Utf8Of(BSTR string);

 private:
  BSTR string_ = nullptr;
};

inline std::string String::Utf8Of(BSTR string) {
  std::string out;
  const auto trailing = [&out](char32_t code, int shift) {
    out += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  };
  const UINT length = SysStringLen(string);
  for (UINT i = 0; i < length; ++i) {
    char32_t code = static_cast<char16_t>(string[i]);
    if (code >= 0xD800 && code < 0xE000) {
      const char32_t low = i + 1 < length ? static_cast<char16_t>(string[i + 1]) : 0;
      const bool is_pair = code < 0xDC00 && low >= 0xDC00 && low < 0xE000;
      code = is_pair ? 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00) : 0xFFFD;
      if (is_pair) ++i;
    }
    if (code < 0x80) {
      out += static_cast<char>(code);
      continue;
    }
    const int shift = code < 0x800 ? 6 : code < 0x10000 ? 12 : 18;
    const char32_t lead = shift == 6 ? 0xC0 : shift == 12 ? 0xE0 : 0xF0;
    out += static_cast<char>(lead | (code >> shift));
    for (int left = shift - 6; left >= 0; left -= 6) trailing(code, left);
  }
  return out;
}

inline String::String(std::string_view utf8) {
  std::basic_string<OLECHAR> units;
  units.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i++]);
    const int trailing = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    char32_t code = lead;
    if (trailing > 0) code &= 0x3FU >> trailing;
    bool is_valid = trailing >= 0 && lead < 0xF5;
    for (int left = trailing; left > 0 && is_valid; --left) {
      is_valid = i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0) == 0x80;
      if (is_valid) code = (code << 6) | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
    }
    is_valid = is_valid && code >= kSmallest[trailing] && code < 0x110000 &&
               (code < 0xD800 || code > 0xDFFF);
    if (!is_valid) throw Error(E_INVALIDARG, "", "A text is not UTF-8.");
    if (code >= 0x10000) {
      units += static_cast<OLECHAR>(0xD800 + ((code - 0x10000) >> 10));
      code = 0xDC00 + ((code - 0x10000) & 0x3FF);
    }
    units += static_cast<OLECHAR>(code);
  }
  string_ = SysAllocStringLen(units.data(), static_cast<UINT>(units.size()));
  if (!string_) throw Error(E_OUTOFMEMORY, "", "");
}

/// Throws Error, with what the object has said of it, for the result of a call that failed; returns
/// every other result.
inline HRESULT Check(HRESULT result) {
  if (SUCCEEDED(result)) return result;
  String source;
  String description;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetSource(source.Put());
    info->GetDescription(description.Put());
  }
  throw Error(result, source.Utf8(), description.Utf8());
}

/// Enters the component runtime on this thread for as long as it lives; objects and pointers to
/// them must be gone by then.
class Apartment {
 public:
  Apartment() { Check(CoInitialize(nullptr)); }
  ~Apartment() { CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

/// Creates an object of a registered class. Throws Error; for a thread without an Apartment and for
/// a class that is not registered it says what to do.
template <class Interface>
ComPtr<Interface> Create(REFCLSID clsid = ClassId<Interface>::value) {
  SetErrorInfo(0, nullptr);  // the runtime sets none for a class that it does not know
  ComPtr<Interface> object;
  const HRESULT result =
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IdOf<Interface>(), object.PutVoid());
  if (result == CO_E_NOTINITIALIZED) {
    throw Error(result, "", "This thread has no sabxml::Apartment, which must live while it works");
  }
  if (result == REGDB_E_CLASSNOTREG) {
    OLECHAR text[39] = {};
    StringFromGUID2(clsid, text, 39);
    std::string id;
    for (const OLECHAR* unit = text; *unit; ++unit) id += static_cast<char>(*unit);
    throw Error(result, "",
                "No library is registered for the class " + id +
                    ": run \"sabxml register\", or use CreateFrom");
  }
  Check(result);
  return object;
}

/// Creates an object with nothing registered, by the server's own entry point: that of a library
/// which the program is linked with, or has loaded.
template <class Interface, class EntryPoint>
ComPtr<Interface> CreateFrom(EntryPoint&& get_class_object,
                             REFCLSID clsid = ClassId<Interface>::value) {
  constexpr IID kClassFactory = {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  SetErrorInfo(0, nullptr);
  ComPtr<IClassFactory> factory;
  Check(get_class_object(clsid, kClassFactory, factory.PutVoid()));
  ComPtr<Interface> object;
  Check(factory->CreateInstance(nullptr, IdOf<Interface>(), object.PutVoid()));
  return object;
}

/// The strings of an array, as UTF-8; none for null. The array stays the caller's.
inline std::vector<std::string> Strings(SAFEARRAY* array) {
  std::vector<std::string> strings;
  if (!array) return strings;
  LONG first = 0;
  LONG last = -1;
  Check(SafeArrayGetLBound(array, 1, &first));
  Check(SafeArrayGetUBound(array, 1, &last));
  for (LONG i = first; i <= last; ++i) {
    String element;
    Check(SafeArrayGetElement(array, &i, element.Put()));
    strings.push_back(element.Utf8());
  }
  return strings;
}

namespace detail {

// The place for one result, and what a program makes of it.
template <class Value>
struct Result {
  Value value{};
  Value* Place() { return &value; }
  Value Take() { return value; }
};
template <>
struct Result<BSTR> {
  String value;
  BSTR* Place() { return value.Put(); }
  std::string Take() { return value.Utf8(); }
};
template <>
struct Result<SAFEARRAY*> {
  SAFEARRAY* value = nullptr;
  Result() = default;
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;
  ~Result() {
    if (value) SafeArrayDestroy(value);
  }
  SAFEARRAY** Place() { return &value; }
  std::vector<std::string> Take() { return Strings(value); }
};
template <class Interface>
struct Result<Interface*> {
  ComPtr<Interface> value;
  Interface** Place() { return value.Put(); }
  ComPtr<Interface> Take() { return std::move(value); }
};

template <class List, class Item>
Item ItemOf(HRESULT (STDMETHODCALLTYPE List::*)(LONG_PTR*, Item**));

}  // namespace detail

/// Calls a member that has one result, after the arguments given, and returns the result: a text as
/// std::string, an array of strings as std::vector, an object as ComPtr, anything else as it is.
///
///     for (const std::string& path : Get(app, &IVeAppParser::GetTmplatePaths)) …
template <class Interface, class Owner, class... Parameter, class... Argument>
auto Get(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Owner::*member)(Parameter...),
         const Argument&... arguments) {
  static_assert(sizeof...(Parameter) == sizeof...(Argument) + 1, "the member's last is its result");
  using Place = std::tuple_element_t<sizeof...(Parameter) - 1, std::tuple<Parameter...>>;
  static_assert(std::is_pointer_v<Place> && !std::is_same_v<Place, BSTR> &&
                    !std::is_same_v<Place, SAFEARRAY*>,
                "the member takes its last argument and has no result: call it itself, in Check");
  detail::Result<std::remove_pointer_t<Place>> result;
  Check((object.Get()->*member)(arguments..., result.Place()));
  return result.Take();
}

/// The elements of a list, for a range-for. The list must not change meanwhile.
///
///     for (const auto& page : sabxml::Items(Get(app, &IVeAppParser::GetConfigurations))) …
template <class List>
class Items {
 public:
  using Item = decltype(detail::ItemOf(&List::GetNext));

  /// Ends the range.
  struct End {};

  class Iterator {
   public:
    explicit Iterator(List& list) : list_(&list) {
      Check(list_->GetHeadPosition(&position_));
      ++*this;
    }
    const ComPtr<Item>& operator*() const { return item_; }
    const ComPtr<Item>* operator->() const { return &item_; }
    Iterator& operator++() {
      if (position_ == 0) {
        item_ = nullptr;
      } else {
        Check(list_->GetNext(&position_, item_.Put()));
      }
      return *this;
    }
    bool operator!=(End) const { return static_cast<bool>(item_); }

   private:
    List* list_;  // which the range holds
    LONG_PTR position_ = 0;
    ComPtr<Item> item_;
  };

  explicit Items(ComPtr<List> list) : list_(std::move(list)) {}
  Iterator begin() const { return Iterator(*list_); }
  End end() const { return {}; }

 private:
  ComPtr<List> list_;
};

}  // namespace sabxml
