#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/com_ptr.h"
#include "client/value.h"

namespace sab::client {

/// Arguments in their order, laid out as Invoke takes them: the last one first, and the value of a
/// put named.
struct InvokeParameters {
  InvokeParameters(const std::vector<Value>& arguments, bool is_put);
  InvokeParameters(const InvokeParameters&) = delete;
  InvokeParameters& operator=(const InvokeParameters&) = delete;

  std::vector<VARIANT> reversed;  ///< owned by the arguments
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters;
};

/// All that a call by name gives back.
struct CallResult {
  static constexpr UINT kNoArgument = ~0U;

  HRESULT code = S_OK;  ///< of Invoke itself
  Value value;
  SCODE scode = S_OK;  ///< of the member's own failure, as are the texts; UTF-8
  std::string source;
  std::string description;
  UINT bad_argument = kNoArgument;  ///< the place of a refused argument, counted from the last

  /// The member's own failure, if it was called and failed, else that of the call.
  HRESULT Outcome() const { return code == DISP_E_EXCEPTION ? scode : code; }
};

/// Calls a member. A failure is told by the result.
/// @param flags DISPATCH_…; the last argument of a put is its value
CallResult Invoke(IDispatch& object, DISPID member, WORD flags,
                  const std::vector<Value>& arguments = {});
/// The same with parameters that the caller has laid out.
CallResult Invoke(IDispatch& object, DISPID member, WORD flags, DISPPARAMS& parameters);

/// Raises ComError, with the object's code, for a name that the object does not have.
DISPID MemberNamed(IDispatch& object, std::string_view name);

/// Calls a member by its dispid or its name. Raises ComError with the code of a failure and with
/// the description that the member gives, which may be empty.
Value Call(IDispatch& object, DISPID member, WORD flags, const std::vector<Value>& arguments = {});
Value Call(IDispatch& object, std::string_view name, WORD flags,
           const std::vector<Value>& arguments = {});
Value Get(IDispatch& object, std::string_view property, const std::vector<Value>& arguments = {});
void Put(IDispatch& object, std::string_view property, const Value& value);

/// A walk over a collection of the server by its positions; holds the collection.
class ListWalk {
 public:
  /// At the first element. Raises ComError.
  explicit ListWalk(IDispatch& list);

  bool IsAtEnd() const { return position_.Number() == 0; }
  /// The element at the walk's place, which moves on. Raises ComError; the walk is at its end then.
  Value Next();

 private:
  ComPtr<IDispatch> list_;
  Value position_;
};

}  // namespace sab::client
