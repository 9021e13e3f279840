#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/com_error.h"
#include "base/com_ptr.h"
#include "base/text.h"
#include "cli/standard_input.h"
#include "client/value.h"

namespace sabxml::cli {

using sab::ComPtr;
using sab::FromUtf8;
using sab::ToUtf8;
using sab::client::Value;
std::string ToUtf8(BSTR text);

/// A failure that a person reads; the program then ends with the exit code 1.
class Failure : public std::runtime_error {
 public:
  /// @param code what the server or the system answered; S_OK if neither was asked
  explicit Failure(const std::string& reason, HRESULT code = S_OK)
      : std::runtime_error(reason), code_(code) {}

  HRESULT Code() const { return code_; }
  /// The reason, and the code in digits and words where there is one.
  std::string Explanation() const;

 private:
  HRESULT code_;
};

/// Raises Failure with the thread's error description where there is one, else with the action.
[[noreturn]] void Fail(HRESULT code, const std::string& action);

/// Makes calls of the client; raises Failure with what a member says of its failure.
template <class Calls>
auto OrFail(const Calls& calls) try {
  return calls();
} catch (const sab::ComError& error) {
  throw Failure(*error.what() ? WithStandardInput(error.what()) : "the call failed", error.Code());
}

/// Calls a member by its dispid. Raises Failure with what the member says of its failure.
/// @param arguments in their order
Value Call(IDispatch& object, DISPID member, WORD flags, const std::vector<Value>& arguments = {});
/// The same by name. Raises Failure for a name that the object does not have.
Value Call(IDispatch& object, std::string_view name, WORD flags,
           const std::vector<Value>& arguments = {});

}  // namespace sabxml::cli
