#include "automation.h"

#include "result_words.h"

namespace sabxml::cli {
namespace {

using Text = std::basic_string<OLECHAR>;

void AppendUtf8(std::string& out, unsigned code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
    return;
  }
  const int trailing = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const unsigned lead = trailing == 1 ? 0xC0 : trailing == 2 ? 0xE0 : 0xF0;
  out += static_cast<char>(lead | code >> (6 * trailing));
  for (int i = trailing - 1; i >= 0; --i) {
    out += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
  }
}

std::string TakeDescription() {
  Reference<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return {};
  BSTR description = nullptr;
  info->GetDescription(&description);
  std::string text = ToUtf8(description);
  SysFreeString(description);
  return text;
}

}  // namespace

std::string ToUtf8(std::basic_string_view<OLECHAR> text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned code = text[i];
    const unsigned next = i + 1 < text.size() ? static_cast<unsigned>(text[i + 1]) : 0;
    if (code >= 0xD800 && code <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
      code = 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00);
      ++i;
    } else if (code >= 0xD800 && code <= 0xDFFF) {
      code = 0xFFFD;
    }
    AppendUtf8(out, code);
  }
  return out;
}

std::string ToUtf8(BSTR text) {
  return text ? ToUtf8(std::basic_string_view<OLECHAR>(text, SysStringLen(text))) : std::string();
}

// Arguments of the command line: what is not UTF-8 there is taken byte by byte as U+FFFD.
Text FromUtf8(std::string_view utf8) {
  Text out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto first = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = first < 0x80    ? 1
                               : first >= 0xF0 ? 4
                               : first >= 0xE0 ? 3
                               : first >= 0xC2 ? 2
                                               : 0;
    unsigned code = length == 0 || i + length > utf8.size() ? 0xFFFD : first;
    if (code != 0xFFFD && length > 1) {
      code = first & (0x7FU >> length);
      for (std::size_t k = 1; k < length; ++k) {
        code = code << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3FU);
      }
    }
    i += code == 0xFFFD || length == 0 ? 1 : length;
    if (code >= 0x10000) {
      out += static_cast<OLECHAR>(0xD7C0 + (code >> 10));
      out += static_cast<OLECHAR>(0xDC00 | (code & 0x3FF));
    } else {
      out += static_cast<OLECHAR>(code);
    }
  }
  return out;
}

std::string Failure::Explanation() const {
  if (SUCCEEDED(code_)) return what();
  const std::string words = ResultWords(code_);
  return what() + (" (" + ResultDigits(code_)) + (words.empty() ? "" : ": " + words) + ")";
}

void Fail(HRESULT code, const std::string& action) {
  const std::string description = TakeDescription();
  throw Failure(description.empty() ? action + " failed" : description, code);
}

Value::Value(std::string_view text) {
  VariantInit(&variant_);
  const Text wide = FromUtf8(text);
  variant_.vt = VT_BSTR;
  variant_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (!variant_.bstrVal) throw std::bad_alloc();
}

Value::Value(LONGLONG number) {
  VariantInit(&variant_);
  variant_.vt = VT_I8;
  variant_.llVal = number;
}

Value Call(IDispatch& object, DISPID member, WORD flags, std::vector<Value> arguments) {
  std::vector<VARIANTARG> given;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    given.push_back(argument->Get());  // still owned by its Value
  }
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS parameters{given.data(), is_put ? &put : nullptr, static_cast<UINT>(given.size()),
                        is_put ? 1U : 0U};
  Value result;
  EXCEPINFO exception{};
  const HRESULT outcome = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &result.Get(), &exception, nullptr);
  if (SUCCEEDED(outcome)) return result;
  const std::string description = ToUtf8(exception.bstrDescription);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  const HRESULT code = outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
  throw Failure(description.empty() ? "the call failed" : description, code);
}

Value Call(IDispatch& object, std::string_view name, WORD flags, std::vector<Value> arguments) {
  Text wide = FromUtf8(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) throw Failure("there is no member named " + std::string(name), result);
  return Call(object, id, flags, std::move(arguments));
}

}  // namespace sabxml::cli
