// Reads CSV (RFC 4180) in UTF-8, row by row.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/batch/digest.h"

namespace qv::cli {

// Lines end with LF or CR LF. Empty lines and a byte order mark are passed over. Strict otherwise: a quote
// inside a cell without quotes, text after a closing quote, and a quote that is never closed are refused.
class CsvReader {
 public:
  // All throw Failure: kLocal, with the place "rows.csv, line 17: ", or kInterrupted. The file must be a
  // regular one.
  explicit CsvReader(const std::string& path);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  // The cells of the next row; false at the end. At most 16 MB and 32767 cells, so that a file that is not
  // CSV fills no memory.
  bool Next(std::vector<std::string>& cells);

  // Throws the failure for the row that was read last.
  [[noreturn]] void Refuse(const std::string& reason) const;

  // Of all bytes that were read so far.
  std::uint64_t DigestSoFar() const noexcept { return digest_.Value(); }

 private:
  static constexpr int kEnd = -1;

  int Peek();
  int Take();
  bool Fill();
  void TakeMark();
  bool TakeLineEnd();
  std::string TakeCell();
  std::string TakeQuoted();

  std::string path_;
  int descriptor_;
  std::array<char, 65536> buffer_{};
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  Digest digest_;
  std::int64_t nextLine_ = 1;  // of the next byte
  std::int64_t line_ = 1;      // of the row's start
  std::size_t rowBytes_ = 0;
};

}  // namespace qv::cli
