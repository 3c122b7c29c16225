// The memory of one document: allocated from a few large blocks, limited, and freed all at once. Most answers
// fit into one block, since new memory from the system would cost as much as reading the document: one of at
// most 1 MB is kept by the thread for its next document, and one of at most 32 MB comes from the C library,
// which reuses it. Parser and document must be destroyed before it. Used by one thread. Failure: the XML
// library's OutOfMemoryException, at the limit and when the system has no more memory.
#pragma once

#include <cstddef>

namespace qv {

class ParseMemory {
 public:
  ParseMemory() noexcept;
  ~ParseMemory();
  ParseMemory(const ParseMemory&) = delete;
  ParseMemory& operator=(const ParseMemory&) = delete;

  // From now on at most `bytes` may be in use, including those in use now. Requests below 1 kB may exceed
  // this by up to 16 MB.
  void SetLimit(std::size_t bytes) noexcept { limit_ = bytes; }
  // From now on memory is cleared before the system or the next parser gets it.
  void ClearAtEnd() noexcept { clears_ = true; }
  // Bytes in use. Parts of a shared block count until the end, even after they are freed.
  std::size_t BytesInUse() const noexcept { return inUse_; }
  // Before the first allocation: the document is likely to need so many bytes. True if a part of that size,
  // from Resize, costs nothing until it is used.
  bool Expect(std::size_t bytes) noexcept;
  // Gives everything back now, so that nothing of it is in use.
  void GiveAllBack() noexcept;

  void* allocate(std::size_t size);
  void deallocate(void* bytes);
  // A part of another size with the same contents; null is a part without contents. Large parts keep
  // their pages, so they are neither copied nor there twice. After a failure the old part is as it was.
  void* Resize(void* bytes, std::size_t size);

 private:
  struct Block;
  struct Piece;

  std::size_t SmallRequestLimit() const noexcept;
  std::size_t LargestShared() const noexcept;
  bool HasRoom(std::size_t total) const noexcept { return static_cast<std::size_t>(end_ - next_) >= total; }
  void* TakeFromBlock(std::size_t total) noexcept;
  void* TakeAlone(std::size_t total);
  void* TakeMapped(std::size_t total);
  void* ResizeMapped(Piece* piece, std::size_t total);
  Piece* Remap(Piece* piece, std::size_t mapped);
  void RequireRoom(std::size_t more, std::size_t limit) const;
  void StartBlock();
  void ShareBlock(void* memory, std::size_t size, std::size_t mapped) noexcept;
  bool IsNewest(const Piece* piece) const noexcept;
  bool ResizeNewest(Piece* piece, std::size_t total) noexcept;
  static void* TakeSpare(std::size_t size) noexcept;
  static void KeepSpare(Block* block) noexcept;
  void Link(Block* block) noexcept;
  void Unlink(Block* block) noexcept;
  void Relink(Block* block) noexcept;
  static void Give(Block* block, bool isSpare) noexcept;
  void Clear(Block* block) const noexcept;

  Block* blocks_ = nullptr;  // all allocated blocks, the newest first
  Block* shared_ = nullptr;  // the one that pieces are cut from
  char* next_ = nullptr;     // its free part
  char* top_ = nullptr;      // the end of what was ever used of it
  char* end_ = nullptr;
  std::size_t inUse_ = 0;
  std::size_t limit_ = static_cast<std::size_t>(-1);
  bool clears_ = false;
};

}  // namespace qv
