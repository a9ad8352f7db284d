// The keys the DNS settings' fields accept, shared by every field that takes a name server
// address or a host name.
#pragma once

#include <cctype>

#include "ui/FormKeys.h"

namespace Konu {

// Backspace, Delete, Left, Right, Home and End: the keys that edit without typing.
inline bool IsFieldMoveKey(int key) { return IsEditingKey(key) && !(key >= 32 && key < 127); }

// A name server address field: hexadecimal digits, ".", ":" and the editing keys.
inline bool AcceptsServerAddressKey(int key) {
  return IsFieldMoveKey(key) || (key >= 0 && key < 127 && (std::isxdigit(key) || key == '.' || key == ':'));
}

// A host name field: letters, digits, "-", "." and the editing keys.
inline bool AcceptsHostnameKey(int key) {
  return IsFieldMoveKey(key) || (key >= 0 && key < 127 && (std::isalnum(key) || key == '-' || key == '.'));
}

}  // namespace Konu
