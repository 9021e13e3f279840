#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "server/registry_target.h"

namespace sab {

/// A script in the registrar language: registry keys and values as a tree.
///
///     HKCR
///     {
///         NoRemove CLSID
///         {
///             ForceRemove '%CLSID%' = s 'Name'
///             {
///                 val ThreadingModel = s 'Apartment'
///             }
///         }
///     }
///
/// A key may have a default value after =. The types are s (text), d (a number in decimal or with
/// &h in hexadecimal), b (bytes in hexadecimal) and m (texts, with \0 between them). Before a key
/// may come NoRemove (the key stays when unregistering), ForceRemove (whatever the key holds is
/// removed before it is written, and all of it when unregistering) or Delete (the key is removed,
/// whatever happens).
struct RegistrarScript {
  std::string_view name;  ///< for messages
  std::string_view text;
};

using Replacements = std::map<std::string, std::string, std::less<>>;

/// Writes what the script says. Raises ComError with the script's name, line and column.
void RunRegistrarScript(const RegistrarScript& script, const Replacements& replacements,
                        RegistryTarget& registry);

/// Removes what the script wrote: its values that have not changed since, and its keys where
/// nothing else is left in them.
void UndoRegistrarScript(const RegistrarScript& script, const Replacements& replacements,
                         RegistryTarget& registry);

}  // namespace sab
