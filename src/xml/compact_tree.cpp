#include "xml/compact_tree.h"

#include <cstring>

#include <xercesc/util/OutOfMemoryException.hpp>

namespace qv {
namespace {

// Tables have 24 to 32 units for each node.
constexpr std::size_t kUnitsOfNode = 24;
constexpr std::size_t kBytesBesideNodes = std::size_t{16} * 1024;
// They have a stored unit for each 12 units.
constexpr std::size_t kUnitsOfStoredByte = 6;

}  // namespace

void CompactTree::Start(std::u16string_view source, std::size_t ceiling) {
  Forget();
  source_ = source.data();
  ceiling_ = ceiling;
  const std::size_t nodes = source.size() / kUnitsOfNode + 1;
  const std::size_t beside = kBytesBesideNodes + source.size() / kUnitsOfStoredByte;
  if (memory_.Expect(nodes * sizeof(Node) + beside)) MakeRoom(nodes_, nodes);
  AddRecord(kDocument, 0, {});
}

void CompactTree::Forget() noexcept {
  nodes_.Forget();
  stored_.Forget();
  names_.Forget();
  current_ = kDocumentIndex;
  emptyAt_ = 0;
  openText_ = kNone;
}

std::size_t CompactTree::BytesUsed() const noexcept {
  return nodes_.Size() * sizeof(Node) + stored_.Size() * sizeof(char16_t) + names_.Size() * sizeof(Name);
}

template <class T>
void CompactTree::MakeRoom(ParseArray<T>& array, std::size_t count) {
  const std::size_t used = BytesUsed();
  const std::size_t left = used < ceiling_ ? (ceiling_ - used) / sizeof(T) : 0;
  if (count > left) throw XERCES_CPP_NAMESPACE::OutOfMemoryException();
  array.Grow(memory_, count, left);
}

void CompactTree::MakeRoomForNode() {
  MakeRoom(nodes_, 1);
}

CompactTree::Index CompactTree::AddName(const Text& name) {
  if (!names_.HasRoom(1)) MakeRoom(names_, 1);
  *names_.Add(1) = {name, false};
  return names_.Size() - 1;
}

CompactTree::Text CompactTree::Store(std::u16string_view units) {
  const std::uint32_t offset = stored_.Size();
  if (!stored_.HasRoom(units.size())) MakeRoom(stored_, units.size());
  char16_t* const place = stored_.Add(units.size());
  if (!units.empty()) std::memcpy(place, units.data(), units.size() * sizeof(char16_t));
  return {offset, static_cast<std::uint32_t>(units.size()), true};
}

void CompactTree::AddTextRecord(const Text& text) {
  AddChild(kText, 0, text);
  openText_ = nodes_.Size() - 1;
}

void CompactTree::AppendText(std::u16string_view units) {
  const Text text = Store(units);
  if (openText_ == kNone) {
    AddText(text);
  } else {
    nodes_[openText_].length += text.length;
  }
}

void CompactTree::AddChild(Type type, Index name, const Text& value) {
  SplitText();
  const Index index = AddRecord(type, name, value);
  nodes_[index].end = index + 1;
}

void CompactTree::MoveText() {
  const Node held = nodes_[current_];
  const Index index = AddRecord(kText, 0, {held.offset, held.length, held.isStored});
  nodes_[index].end = index + 1;
  Node& element = nodes_[current_];
  element.holdsText = false;
  element.offset = 0;
  element.length = 0;
}

std::u16string_view CompactTree::NameOf(Index node) const noexcept {
  switch (nodes_[node].type) {
    case kText:
      return u"#text";
    case kCData:
      return u"#cdata-section";
    case kComment:
      return u"#comment";
    case kDocument:
      return u"#document";
    default:
      return NameAt(nodes_[node].name);
  }
}

CompactTree::Index CompactTree::LastChildOf(Index node) const noexcept {
  if (FirstChildOf(node) == kNone) return kNone;
  Index last = nodes_[node].end - 1;
  while (nodes_[last].parent != node) last = nodes_[last].parent;
  return last;
}

CompactTree::Index CompactTree::AttributeOf(Index element, std::u16string_view name) const noexcept {
  const Index end = nodes_[element].end;
  for (Index index = element + 1; index < end && nodes_[index].type == kAttribute; ++index)
    if (NameAt(nodes_[index].name) == name) return index;
  return kNone;
}

std::size_t CompactTree::AttributeCountOf(Index element) const noexcept {
  Index index = element + 1;
  while (index < nodes_[element].end && nodes_[index].type == kAttribute) ++index;
  return index - element - 1;
}

bool CompactTree::HasElementNamed(std::u16string_view name) const noexcept {
  for (Index index = 0; index < names_.Size(); ++index)
    if (names_[index].isOfElement && NameAt(index) == name) return true;
  return false;
}

}  // namespace qv
