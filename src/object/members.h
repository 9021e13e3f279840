#pragma once

#include <functional>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "base/bstr.h"
#include "object/error_edge.h"
#include "object/fields.h"

namespace sab {

// How the generated edge reads, writes and calls what a component class has in its fields. A body
// is plain C++: texts arrive as TextView (or as Bstr, for which null stays null), a result is its
// return value, a failure an exception. A body that needs its object takes the interface of it as
// its first argument. One that is noexcept is not guarded.

/// A text argument of an interface method.
class GivenText {
 public:
  explicit GivenText(BSTR text) : text_(text) {}
  operator TextView() const noexcept { return Bstr::ViewOf(text_); }
  operator Bstr() const { return Bstr::CopyOf(text_); }

 private:
  BSTR text_;
};

/// What a body returns whose places stay as they are when it fails, or when it returns nothing.
/// Other bodies have one place, which is cleared before they run.
template <class... Values>
struct KeepsPlaces : std::optional<std::tuple<Values...>> {
  KeepsPlaces() = default;
  KeepsPlaces(Values... values)
      : std::optional<std::tuple<Values...>>(std::in_place, std::move(values)...) {}
};

/// The places for the results of a method.
template <class... Value>
struct Places {
  explicit Places(Value*... places) : pointers(places...) {}
  std::tuple<Value*...> pointers;
};

// A result goes to its place; a text becomes the caller's.
inline void Store(Bstr text, BSTR* place) noexcept { *place = text.Detach(); }
inline void Store(TextView text, BSTR* place) { Store(Bstr(text), place); }
template <class Value, class Place>
void Store(const Value& value, Place* place) noexcept {
  *place = static_cast<Place>(value);
}

/// Calls what reports a failure by its result, or by an exception, and touches the thread's error
/// object only then.
template <class Call>
HRESULT Reported(const ErrorOrigin& origin, Call&& call) noexcept try {
  const HRESULT result = call();
  return SUCCEEDED(result) ? result : ReportCode(origin, result);
} catch (...) {
  return ReportCurrentException(origin);
}

namespace edge {

template <class Body>
HRESULT Run(const ErrorOrigin& origin, Body&& body) noexcept {
  if constexpr (noexcept(body())) {
    return Reported(origin, body);
  } else {
    return Guard(origin, body);
  }
}

template <class Result>
inline constexpr bool kClearsPlace = true;
template <class... Values>
inline constexpr bool kClearsPlace<KeepsPlaces<Values...>> = false;

template <class... Values, class... Value>
HRESULT StoreAll(KeepsPlaces<Values...>&& results, const Places<Value...>& places) noexcept {
  return std::apply(
      [&](auto*... place) {
        if ((!place || ...)) return E_POINTER;
        if (!results) return S_OK;
        std::apply([&](auto&... result) { (Store(std::move(result), place), ...); }, *results);
        return S_OK;
      },
      places.pointers);
}

}  // namespace edge

/// Calls the body of a method.
template <class Fields, class Body, class... Value, class Object, class... Arguments>
HRESULT CallMember(const ErrorOrigin& origin, Fields& fields, Body body,
                   const Places<Value...>& places, Object& object,
                   const Arguments&... arguments) noexcept {
  if constexpr (std::is_invocable_v<Body, Fields&, Object&, const Arguments&...>) {
    const auto bound = [&](Fields& self, const Arguments&... given) {
      return std::invoke(body, self, object, given...);
    };
    return CallMember(origin, fields, bound, places, object, arguments...);
  } else {
    constexpr bool kIsNoexcept = std::is_nothrow_invocable_v<Body, Fields&, const Arguments&...>;
    using Result = std::invoke_result_t<Body, Fields&, const Arguments&...>;
    const auto call = [&]() noexcept(kIsNoexcept) -> Result {
      return std::invoke(body, fields, arguments...);
    };
    if constexpr (std::is_void_v<Result>) {
      return edge::Run(origin, [&]() noexcept(kIsNoexcept) {
        call();
        return S_OK;
      });
    } else if constexpr (edge::kClearsPlace<Result>) {
      auto* const place = std::get<0>(places.pointers);
      if (!place) return ReportCode(origin, E_POINTER);
      *place = {};
      return edge::Run(origin, [&]() noexcept(noexcept(Store(call(), place))) {
        Store(call(), place);
        return S_OK;
      });
    } else {
      return edge::Run(origin,
                       [&]() noexcept(kIsNoexcept) { return edge::StoreAll(call(), places); });
    }
  }
}

/// Hands out a value, or what a body without arguments returns.
template <class Fields, class Member, class Value>
HRESULT ReadMember(const ErrorOrigin& origin, Fields& fields, Member member,
                   Value* place) noexcept {
  if constexpr (std::is_member_function_pointer_v<Member>) {
    return CallMember(origin, fields, member, Places(place), fields);
  } else {
    return Reported(origin, [&] { return GetField(fields.*member, place); });
  }
}

/// Stores a value, or hands it to a body with one argument.
template <class Fields, class Member, class Value>
HRESULT WriteMember(const ErrorOrigin& origin, Fields& fields, Member member,
                    Value value) noexcept {
  if constexpr (!std::is_member_function_pointer_v<Member>) {
    return Reported(origin, [&] { return PutField(fields.*member, value); });
  } else if constexpr (std::is_same_v<Value, BSTR>) {
    return CallMember(origin, fields, member, Places<>(), fields, GivenText(value));
  } else {
    return CallMember(origin, fields, member, Places<>(), fields, value);
  }
}

}  // namespace sab
