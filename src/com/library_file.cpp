#include "com/library_file.h"

#include <link.h>
#include <unistd.h>

#include <cstring>

#include "system/regular_file.h"

namespace qv {
namespace {

// False if the file is too short.
bool ReadAt(const RegularFile& file, void* place, std::size_t size, std::uint64_t offset) {
  const auto whole = static_cast<std::uint64_t>(file.size);
  if (offset > whole || whole - offset < size) return false;
  return pread(file.descriptor.Get(), place, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

bool IsOurKind(const ElfW(Ehdr) & head) {
  return std::memcmp(head.e_ident, ELFMAG, SELFMAG) == 0 && head.e_phentsize == sizeof(ElfW(Phdr));
}

bool LiesIn(const RegularFile& file, const ElfW(Phdr) & segment) {
  const auto whole = static_cast<std::uint64_t>(file.size);
  return segment.p_type != PT_LOAD ||
         (segment.p_offset <= whole && segment.p_filesz <= whole - segment.p_offset);
}

}  // namespace

bool IsCutOff(const std::string& path) {
  const RegularFile file = OpenRegularFile(path);
  ElfW(Ehdr) head;
  if (file.error != 0 || !ReadAt(file, &head, sizeof head, 0) || !IsOurKind(head)) return false;
  for (unsigned i = 0; i < head.e_phnum; ++i) {
    ElfW(Phdr) segment;
    if (!ReadAt(file, &segment, sizeof segment, head.e_phoff + i * sizeof segment)) return true;
    if (!LiesIn(file, segment)) return true;
  }
  return false;
}

}  // namespace qv
