#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "base/bstr.h"
#include "base/com_error.h"
#include "common/config_document.h"
#include "server/component_creator.h"

namespace sab {

/// An automation string over memory that is used again: what a setter copies needs no allocation of
/// the reader's own.
class ReusedString {
 public:
  /// Valid until the next call.
  BSTR Set(TextView text);

 private:
  std::vector<OLECHAR>
      memory_;  // the length in bytes, as automation strings have it, then the text
};

/// What a reader of elements needs at hand during one Generate call.
struct ReadingContext {
  ComponentCreator creator;
  Text text;           ///< of the element that is being read
  ReusedString value;  ///< the same for a setter
  Bstr command;        ///< name of the command whose entries are being read
};

struct ElementGrammar;

/// An element whose text goes into its owner.
struct ValueRule {
  std::string_view name;
  void (*put)(ReadingContext& context, IDispatch& owner);  ///< puts context.text
};

/// An element that has an object of its own, or leads to one.
struct ChildRule {
  std::string_view name;
  const ElementGrammar* grammar;  ///< what stands inside; null where nothing is read
  ComPtr<IDispatch> (*open)(ReadingContext& context, IDispatch& owner,
                            const ConfigElement& element);
  void (*append)(IDispatch& owner, IDispatch& child);  ///< when it has been read; may be null
};

/// What an element may hold, by local name; all else is passed over.
struct ElementGrammar {
  std::span<const ValueRule> values;
  std::span<const ChildRule> children;
};

/// Reads an element and everything inside it into an object, to any depth, in document order.
/// Raises ComError for a setter, a creation or a list that fails; what was appended before stays.
void ReadElements(ReadingContext& context, const ConfigElement& element,
                  const ElementGrammar& grammar, IDispatch& object);

}  // namespace sab
