// The tree of a document from memory: one record of 20 bytes for each node, in document order. An attribute
// follows its element. The only text of an element, and the text of an attribute, is in the record of its
// owner. A text is a view of the document's text where both are the same, so the document's text must outlive
// the tree; all others are stored here. All memory is that of a ParseMemory, which frees it. Used by one
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "xml/parse_memory.h"

namespace qv {

// An array in the memory of a document. It grows by an eighth, since large ones keep their pages.
template <class T>
class ParseArray {
 public:
  std::uint32_t Size() const noexcept { return size_; }
  T& operator[](std::uint32_t index) noexcept { return data_[index]; }
  const T& operator[](std::uint32_t index) const noexcept { return data_[index]; }
  const T* Data() const noexcept { return data_; }

  bool HasRoom(std::size_t count) const noexcept { return count <= capacity_ - size_; }
  // For at least `count` more, but for no more than `most` more.
  void Grow(ParseMemory& memory, std::size_t count, std::size_t most) {
    constexpr std::size_t kLarge = (std::size_t{1} << 20) / sizeof(T);
    std::size_t more = size_ < kLarge ? size_ + 64 : size_ / 8;
    if (more > most) more = most;
    if (more < count) more = count;
    data_ = static_cast<T*>(memory.Resize(data_, (size_ + more) * sizeof(T)));
    capacity_ = static_cast<std::uint32_t>(size_ + more);
  }
  // There must be room.
  T* Add(std::size_t count) noexcept {
    T* const place = data_ + size_;
    size_ += static_cast<std::uint32_t>(count);
    return place;
  }
  // The memory was given back.
  void Forget() noexcept { *this = ParseArray(); }

 private:
  T* data_ = nullptr;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 0;
};

class CompactTree {
 public:
  // The numbers of DOM Level 1.
  enum Type : std::uint32_t {
    kElement = 1,
    kAttribute = 2,
    kText = 3,
    kCData = 4,
    kInstruction = 7,
    kComment = 8,
    kDocument = 9
  };
  using Index = std::uint32_t;
  static constexpr Index kDocumentIndex = 0;
  static constexpr Index kNone = 0;  // the document is nobody's child

  struct Text {
    std::uint32_t offset;
    std::uint32_t length;
    bool isStored;  // here, not in the document's text
  };

  explicit CompactTree(ParseMemory& memory) noexcept : memory_(memory) {}
  CompactTree(const CompactTree&) = delete;
  CompactTree& operator=(const CompactTree&) = delete;

  // Longer texts have other trees: indexes and offsets have 32 bits, numbers of names 26.
  static constexpr std::size_t kMostUnits = std::size_t{1} << 28;
  // Bytes that the tree of such a text may take; the densest markup, "x<a/>", takes 8.4 a unit.
  static constexpr std::size_t CeilingFor(std::size_t units) noexcept {
    return (std::size_t{16} << 20) + units * 10;
  }

  // --- Building, in document order. OutOfMemoryException of the XML library, also at the ceiling.

  // `source` is the document's text, empty when nothing will be a view of it.
  void Start(std::u16string_view source, std::size_t ceiling);
  // The memory was given back: nothing is left.
  void Forget() noexcept;
  // A number for later nodes. The same name may have several.
  Index AddName(const Text& name);
  Text Store(std::u16string_view units);
  void OpenElement(Index name) {
    SplitText();
    current_ = AddRecord(kElement, name, {});
    emptyAt_ = nodes_.Size();
    names_[name].isOfElement = true;
  }
  // Directly after OpenElement.
  void AddAttribute(Index name, const Text& value) {
    const Index index = AddRecord(kAttribute, name, value);
    nodes_[index].holdsText = true;
    nodes_[index].end = index + 1;
    emptyAt_ = nodes_.Size();
  }
  // A text of the open element, that does not follow a text.
  void AddText(const Text& text) {
    Node& element = nodes_[current_];
    if (emptyAt_ != nodes_.Size() || element.holdsText) return AddTextRecord(text);
    element.holdsText = true;
    element.isStored = text.isStored;
    element.offset = text.offset;
    element.length = text.length;
    openText_ = current_;
  }
  // One that may follow a text, which then grows; nothing else was stored since.
  void AppendText(std::u16string_view units);
  void AddChild(Type type, Index name, const Text& value);
  void CloseElement() noexcept {
    Node& element = nodes_[current_];
    element.end = nodes_.Size();
    current_ = element.parent;
    emptyAt_ = 0;
    openText_ = kNone;
  }
  void Finish() noexcept { nodes_[kDocumentIndex].end = nodes_.Size(); }

  bool IsInDocument() const noexcept { return current_ == kDocumentIndex; }
  Index CurrentElement() const noexcept { return current_; }
  Index NameOfOpenElement() const noexcept { return nodes_[current_].name; }
  std::uint32_t StoredUnits() const noexcept { return stored_.Size(); }
  std::u16string_view NameAt(Index name) const noexcept { return ViewOf(names_[name].text); }

  // --- Reading what is finished.

  std::uint32_t Size() const noexcept { return nodes_.Size(); }
  int TypeOf(Index node) const noexcept { return static_cast<int>(nodes_[node].type); }
  std::u16string_view NameOf(Index node) const noexcept;
  std::u16string_view ValueOf(Index node) const noexcept {
    const Node& record = nodes_[node];
    return ViewOf({record.offset, record.length, record.isStored});
  }
  // A text that is its only child, with ValueOf as its value.
  bool HoldsText(Index node) const noexcept { return nodes_[node].holdsText; }
  Index ParentOf(Index node) const noexcept { return nodes_[node].parent; }
  // kNone for none, and for a text that its parent holds.
  Index FirstChildOf(Index node) const noexcept {
    const Index end = nodes_[node].end;
    Index child = node + 1;
    while (child < end && nodes_[child].type == kAttribute) ++child;
    return child < end ? child : kNone;
  }
  Index NextSiblingOf(Index node) const noexcept {
    const Node& record = nodes_[node];
    if (record.end == nodes_[record.parent].end || record.type == kAttribute) return kNone;
    return record.end;
  }
  // Takes time by the depth of what is below the last child.
  Index LastChildOf(Index node) const noexcept;
  Index AttributeOf(Index element, std::u16string_view name) const noexcept;
  std::size_t AttributeCountOf(Index element) const noexcept;
  bool HasElementNamed(std::u16string_view name) const noexcept;

 private:
  struct Node {
    std::uint32_t name : 26;
    std::uint32_t type : 4;
    bool holdsText : 1;
    bool isStored : 1;
    Index parent;
    Index end;  // the record after all descendants
    std::uint32_t offset;
    std::uint32_t length;
  };
  struct Name {
    Text text;
    bool isOfElement;
  };

  std::u16string_view ViewOf(const Text& text) const noexcept {
    return {(text.isStored ? stored_.Data() : source_) + text.offset, text.length};
  }
  Index AddRecord(Type type, Index name, const Text& text) {
    if (!nodes_.HasRoom(1)) MakeRoomForNode();
    const Index index = nodes_.Size();
    *nodes_.Add(1) = {name & 0x3FFFFFFU, type & 0xFU, false,       text.isStored,
                      current_,          0,           text.offset, text.length};
    return index;
  }
  // What the open element holds gets a record, for there is a second child.
  void SplitText() {
    openText_ = kNone;
    if (emptyAt_ == nodes_.Size() && nodes_[current_].holdsText) MoveText();
  }
  void AddTextRecord(const Text& text);
  void MoveText();
  void MakeRoomForNode();
  std::size_t BytesUsed() const noexcept;
  template <class T>
  void MakeRoom(ParseArray<T>& array, std::size_t count);

  ParseMemory& memory_;
  const char16_t* source_ = nullptr;
  ParseArray<Node> nodes_;
  ParseArray<char16_t> stored_;
  ParseArray<Name> names_;
  std::size_t ceiling_ = 0;
  Index current_ = kDocumentIndex;
  Index emptyAt_ = 0;       // the size at which the open element has no children with records
  Index openText_ = kNone;  // the record of a text that may grow
};

}  // namespace qv
