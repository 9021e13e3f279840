#include "standards/std_sym_rev_parser.h"

#include "base/com_error.h"
#include "binding/bind.h"
#include "common/conversions.h"
#include "formats/catalogue.h"
#include "standards/catalogue_loading.h"
#include "standards/revision_values.h"

namespace sab {

void StdSymRevParserFields::Load(const Address& node) {
  const HandedElement handed = ElementToLoad(node);
  const ConfigElement revision(handed.Place());
  ReadRevisionValues(revision, values);
  Text text;
  for (const ConfigElement child : revision.Children()) {
    if (!child.Is(kElement<formats::kRevision, "RevName">)) continue;
    Revision.Assign(child.ReadText(text));
    break;
  }
}

Bstr StdSymRevParserFields::AttachStdName() const {
  return symbol ? NameOf(symbol->standard) : Bstr();
}

LONG StdSymRevParserFields::AttachSymStdID() const {
  return symbol ? ParseInt(symbol->identify.View()) : 0;
}

void StdSymRevParserFields::SetValue(TextView name, TextView text) {
  if (name.empty()) throw ComError(E_INVALIDARG, "A value needs a name.");
  values.Set(name, text);
}

}  // namespace sab
