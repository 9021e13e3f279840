#include "standards/attachment.h"

#include "base/com_error.h"

namespace sab {
namespace {

// The state that an object of this library keeps; null where it is of another.
template <class State, class Interface>
ComPtr<Shared<State>> OwnStateOf(Interface& object) {
  ComPtr<Shared<State>> state;
  object.QueryInterface(State::kId, state.PutVoid());
  return state;
}

}  // namespace

ComPtr<Shared<StandardState>> StateOf(IVeStandardParser* standard) {
  if (!standard) return {};
  if (auto own = OwnStateOf<StandardState>(*standard)) return own;
  auto state = Shared<StandardState>::Create();
  Check(standard->get_Name(state->name.Put()), "The standard does not tell its name.");
  return state;
}

ComPtr<Shared<SymbolState>> StateOf(IVeStdSymbolParser* symbol) {
  if (!symbol) return {};
  if (auto own = OwnStateOf<SymbolState>(*symbol)) return own;
  auto state = Shared<SymbolState>::Create();
  state->standard = Shared<StandardState>::Create();
  Check(symbol->GetID(state->identify.Put()), "The symbol does not tell its identifier.");
  Check(symbol->GetAttachStdName(state->standard->name.Put()),
        "The symbol does not tell its standard.");
  return state;
}

Bstr NameOf(const ComPtr<Shared<StandardState>>& standard) {
  return standard ? standard->name : Bstr();
}

}  // namespace sab
