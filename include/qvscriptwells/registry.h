// SPDX-License-Identifier: Apache-2.0
// The registry: keys with texts, stored in files. It holds the path of the installation's home directory, and
// the paths of the libraries whose classes programs create by name (class_registry.h).
//
// Keys are paths such as "SOFTWARE\Quorvane\Quorvane\HomeDir"; ASCII letters match in any case. Files are
// searched in this order; the first one that has the key is used:
//   1. the file that the environment variable QV_REGISTRY names,
//   2. quorvane/registry.reg below $XDG_CONFIG_HOME (else below $HOME/.config),
//   3. quorvane/registry.reg below the directory of settings of the prefix that the library was configured
//   with
//      (/etc for /usr): the administrator's, which no installation writes,
//   4. quorvane/registry.reg below the library directory of that prefix: the installation's, which is never
//      changed (an installation elsewhere is named by QV_REGISTRY).
// A file is UTF-8 text in the usual form of exported registries:
//   ; a comment
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Quorvane\Quorvane\HomeDir]
//   @="/usr/share/quorvane"
//   "name"="another text of the same key"
// where \\ and \" mean \ and " inside the quotes.
//
// A file has at most 1 MiB, and sections below HKEY_LOCAL_MACHINE only; [HKEY_CLASSES_ROOT\x] is another way
// to write [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\x]. A comment is on a separate line. Values other than texts
// are kept but not read; of several texts for one key and name in a file the last one counts. Empty
// variables, and an XDG_CONFIG_HOME or HOME that is not absolute, count as unset.
//
// Files are read again for each call. A write replaces the whole file; of two writers at once the later one
// wins. Symbolic links are followed and kept, but a dangling one is replaced. Threads: any, as long as the
// environment is not changed meanwhile.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qvscriptwells/wide_string.h"

namespace qv {

// The key of the installation's home directory.
constexpr char16_t kHomeDirectoryKey[] = u"SOFTWARE\\Quorvane\\Quorvane\\HomeDir";
// A home directory of more units than this counts as absent.
constexpr std::size_t kLongestHomeDirectory = 129;

// The key that "HKEY_CLASSES_ROOT" means.
constexpr char16_t kClassesKey[] = u"SOFTWARE\\Classes";

struct RegistryEntry {
  WideString key;    // as it is spelled in the file, without "HKEY_LOCAL_MACHINE\"
  WideString value;  // never null
};

// One text of a key.
struct RegistryValue {
  WideString key;    // without "HKEY_LOCAL_MACHINE\"
  WideString name;   // of the value; null or empty for the key's own text
  WideString value;  // null, on writing, creates the key only
};

// One file of the order above.
struct RegistryLayer {
  std::string path;                    // UTF-8
  std::string damage;                  // why it cannot be used, with the line; empty if it can, or is missing
  std::vector<RegistryEntry> entries;  // in the order of the file; none when damaged
  std::vector<RegistryValue> named;    // the same for texts with a name
};

// All layers, including those whose file is missing. A damaged or unreadable file is no failure (`damage`
// says it). Throws `_com_error` with E_OUTOFMEMORY, or std::bad_alloc.
std::vector<RegistryLayer> ReadRegistry();

// The text of `key`; null when no file has it. A damaged file counts as absent. Throws only `_com_error` with
// E_OUTOFMEMORY.
WideString ReadRegistryValue(const WideString& key);
// The text of that name. ASCII letters of the name match in any case.
WideString ReadRegistryValue(const WideString& key, const WideString& name);

// Stores `value` under `key` in the first file of the order that can be written, and returns that file's
// path. Comments and other keys stay. A file that cannot be reached is skipped, unless QV_REGISTRY names it
// or it has the key already and would hide the new value. The directories of the user's and of the
// administrator's file are created if missing. Throws `_com_error` whose Description() names the file and the
// reason: it is damaged, or none can be written (E_FAIL); the key is empty, or key or value hold control
// characters or a lone surrogate (E_INVALIDARG).
std::string WriteRegistryValue(const WideString& key, const WideString& value);

// Several values at once, all of them or none; rules as above.
std::string WriteRegistryValues(const std::vector<RegistryValue>& values);

// Removes the text of `key` from the first file that has it and returns that file's path; empty if none has
// it. Also removes the section if it is then empty. Throws as above, and with E_FAIL if only the
// installation's file has it.
std::string RemoveRegistryValue(const WideString& key);

// Removes keys and everything below them from the first file that has one of them, and returns that file's
// path; empty if none has any. Comments stay. Throws as above.
std::string RemoveRegistryKeys(const std::vector<WideString>& keys);

}  // namespace qv
