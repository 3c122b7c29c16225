// The registry: keys with one text each, kept in files. It tells the library where the installation has its
// home directory, and nothing else.
//
// Keys are paths such as "SOFTWARE\Quorvane\Quorvane\HomeDir"; ASCII letters match in any case. Files are
// looked through in this order, and the first one that has a key decides:
//   1. the file that the environment variable QV_REGISTRY names,
//   2. quorvane/registry.reg below $XDG_CONFIG_HOME (else below $HOME/.config),
//   3. quorvane/registry.reg below the installation's share directory.
// A file is UTF-8 text in the usual form of exported registries:
//   ; a comment
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Quorvane\Quorvane\HomeDir]
//   @="/usr/share/quorvane"
// where \\ and \" stand for \ and " inside the quotes.
//
// A file has at most 1 MiB, and sections below HKEY_LOCAL_MACHINE only; a comment has a line of its own.
// Other values of a section are kept and not read; of several texts for one key in a file the last one
// counts. Variables that are empty, and an XDG_CONFIG_HOME or HOME that is not absolute, are as if they were
// not there.
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

struct RegistryEntry {
  WideString key;    // as it is spelled in the file, without "HKEY_LOCAL_MACHINE\"
  WideString value;  // never null
};

// One file of the order above.
struct RegistryLayer {
  std::string path;    // UTF-8
  std::string damage;  // why it cannot be used, with the line; empty when it can, or is not there
  std::vector<RegistryEntry> entries;  // in the order of the file; none when damaged
};

// All layers, those whose file is not there included.
std::vector<RegistryLayer> ReadRegistry();

// The text of `key`; null when no file has it. A damaged file counts as absent. Never fails.
WideString ReadRegistryValue(const WideString& key) noexcept;

// Puts `value` behind `key`, in the first file of the order that can be written, and returns that file's
// path. Comments and other keys stay. A file that is out of reach is passed over, unless QV_REGISTRY names it
// or it has the key already and would hide the new value. The user's directory is made when missing. Throws
// `_com_error` whose Description() names the file and the reason: it is damaged, or none can be written
// (E_FAIL); the key is empty, or key or value hold control characters or a lone surrogate (E_INVALIDARG).
std::string WriteRegistryValue(const WideString& key, const WideString& value);

// Takes `key` out of the first file that has it and returns that file's path; empty when none has it.
// Throws as above.
std::string RemoveRegistryValue(const WideString& key);

}  // namespace qv
