#pragma once

#include <SabXmlParser.h>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/counted.h"

namespace sab {

// A standard holds its symbols, and a symbol its revisions; each of them can be asked what it is
// attached to. So that no two keep each other alive, a part keeps what it needs to know of
// its owner and not to the owner: a small state of its own, which the owner keeps there. Objects of
// other classes have no such state; they are asked once, when a part is attached to them.

/// What symbols know of their standard.
struct StandardState {
  /// Known to the objects of this library only, which hand out their state by it.
  static constexpr IID kId = {
      0x9D7C5F14, 0x2A6B, 0x4E0F, {0x91, 0x5D, 0x38, 0xC2, 0x74, 0x0B, 0xE6, 0xA9}};

  Bstr name;
};

template <class State>
class Shared;

/// What revisions know of their symbol.
struct SymbolState {
  static constexpr IID kId = {
      0x5E1B8A92, 0xC403, 0x47D8, {0xB7, 0x26, 0x0F, 0x9A, 0xD1, 0x63, 0x85, 0x4C}};

  Bstr identify;
  ComPtr<Shared<StandardState>> standard;  // null where it is attached to none
};

/// A state that outlives its owner as long as it is referenced.
template <class State>
class Shared final : public Counted<IUnknown>, public State {
 public:
  static ComPtr<Shared> Create() {
    ComPtr<Shared> state;
    state.Attach(new Shared);
    return state;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(State::kId, riid, object);
  }

 private:
  Shared() = default;
};

/// The state of a standard or of a symbol, of any implementation. Raises ComError with the code
/// of a call of the object that fails.
/// @param standard may be null, and so is the result then
ComPtr<Shared<StandardState>> StateOf(IVeStandardParser* standard);
ComPtr<Shared<SymbolState>> StateOf(IVeStdSymbolParser* symbol);

/// The name of a standard; null for none.
Bstr NameOf(const ComPtr<Shared<StandardState>>& standard);

}  // namespace sab
