// The registry: keys with texts, kept in files. It tells the library where the installation has its home
// directory, and where the libraries of classes are that programs create by name (class_registry.h).
//
// Keys are paths such as "SOFTWARE\Quorvane\Quorvane\HomeDir"; ASCII letters match in any case. Files are
// looked through in this order, and the first one that has a key decides:
//   1. the file that the environment variable QV_REGISTRY names,
//   2. quorvane/registry.reg below $XDG_CONFIG_HOME (else below $HOME/.config),
//   3. quorvane/registry.reg below the share directory of the prefix that the library was configured with (an
//      installation elsewhere is named by QV_REGISTRY).
// A file is UTF-8 text in the usual form of exported registries:
//   ; a comment
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Quorvane\Quorvane\HomeDir]
//   @="/usr/share/quorvane"
//   "name"="another text of the same key"
// where \\ and \" stand for \ and " inside the quotes.
//
// A file has at most 1 MiB, and sections below HKEY_LOCAL_MACHINE only; [HKEY_CLASSES_ROOT\x] is another way
// to write [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\x]. A comment has a line of its own. Values that are no
// texts are kept and not read; of several texts for one key and name in a file the last one counts. Variables
// that are empty, and an XDG_CONFIG_HOME or HOME that is not absolute, are as if they were not there.
//
// Files are read anew for each call and replaced as a whole when written; of two writers at once the later
// one's file stands. Symbolic links are followed and stay, but one that leads nowhere is replaced. Threads:
// any, as far as the environment is not changed meanwhile.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Where the home directory of the installation stands.
constexpr char16_t kHomeDirectoryKey[] = u"SOFTWARE\\Quorvane\\Quorvane\\HomeDir";
// A home directory of more units than this is read as none.
constexpr std::size_t kLongestHomeDirectory = 129;

// The key that "HKEY_CLASSES_ROOT" stands for.
constexpr char16_t kClassesKey[] = u"SOFTWARE\\Classes";

struct RegistryEntry {
  WideString key;    // as it is spelled in the file, without "HKEY_LOCAL_MACHINE\"
  WideString value;  // never null
};

// One text of a key.
struct RegistryValue {
  WideString key;    // without "HKEY_LOCAL_MACHINE\"
  WideString name;   // of the value; null or empty for the key's own text
  WideString value;  // null, on writing, makes the key alone
};

// One file of the order above.
struct RegistryLayer {
  std::string path;    // UTF-8
  std::string damage;  // why it cannot be used, with the line; empty when it can, or is not there
  std::vector<RegistryEntry> entries;  // in the order of the file; none when damaged
  std::vector<RegistryValue> named;    // the same for texts with a name
};

// All layers, those whose file is not there included.
std::vector<RegistryLayer> ReadRegistry();

// The text of `key`; null when no file has it. A damaged file counts as absent. Throws `_com_error` with
// E_OUTOFMEMORY when memory runs out, and for nothing else.
WideString ReadRegistryValue(const WideString& key);
// The text of that name. ASCII letters of the name match in any case.
WideString ReadRegistryValue(const WideString& key, const WideString& name);

// Puts `value` behind `key`, in the first file of the order that can be written, and returns that file's
// path. Comments and other keys stay. A file that is out of reach is passed over, unless QV_REGISTRY names it
// or it has the key already and would hide the new value. The user's directory is made when missing. Throws
// `_com_error` whose Description() names the file and the reason: it is damaged, or none can be written
// (E_FAIL); the key is empty, or key or value hold control characters or a lone surrogate (E_INVALIDARG).
std::string WriteRegistryValue(const WideString& key, const WideString& value);

// Several values at once, all of them or none; rules as above.
std::string WriteRegistryValues(const std::vector<RegistryValue>& values);

// Takes the text of `key` out of the first file that has it and returns that file's path; empty when none has
// it. A section of the file that is empty then is removed, too. Throws as above.
std::string RemoveRegistryValue(const WideString& key);

// Takes keys with all that stands below them out of the first file that has one of them, and returns that
// file's path; empty when none has any. Comments stay. Throws as above.
std::string RemoveRegistryKeys(const std::vector<WideString>& keys);

}  // namespace qv
