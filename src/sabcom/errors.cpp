#include "sabcom/errors.h"

#include <new>
#include <string>

#include "sabcom/utf.h"

namespace sabcom {

void Explain(std::string_view message) noexcept {
  ICreateErrorInfo* creator = nullptr;
  if (FAILED(CreateErrorInfo(&creator))) return;
  IErrorInfo* info = nullptr;
  try {
    std::u16string text = FromUtf8(message);
    creator->SetDescription(text.data());
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
      SetErrorInfo(0, info);
      info->Release();
    }
  } catch (const std::bad_alloc&) {
    // There is the code alone.
  }
  creator->Release();
}

}  // namespace sabcom
