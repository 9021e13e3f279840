#pragma once

#include <sabxml/com.h>

namespace sab {

// Where the results of a late-bound call go: variables of the caller's, each of a type of its own.

/// The variable that an argument names: the argument itself unless it is a reference to a variant.
/// What it names may in turn be a reference to a value of one type.
/// @return null for a reference that leads nowhere or in a circle
VARIANTARG* Dereferenced(VARIANTARG& argument) noexcept;

/// Whether a result of the type can be stored through an argument, whatever its value is. It is
/// asked before the call, since a call that has acted must not fail any more.
/// @return DISP_E_OVERFLOW for a number that is too narrow, DISP_E_TYPEMISMATCH for another type,
///         DISP_E_ARRAYISLOCKED for an array in use; S_OK too for an argument that is no reference
HRESULT CheckPlace(VARIANTARG& argument, VARTYPE type) noexcept;

/// Stores a result where an argument points to, in the type that is there; takes the value over.
HRESULT StoreThrough(VARIANTARG& argument, VARIANT& value) noexcept;

/// Turns a number into a type that script engines know: signed integers of up to 32 bits and
/// doubles. They fail on others: VBScript cannot even compare a VT_I8.
void MakeScriptable(VARIANT& value) noexcept;

}  // namespace sab
