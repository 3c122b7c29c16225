#include "tools/batch/csv_reader.h"

#include <fcntl.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstring>

#include "tools/report/failure.h"
#include "tools/system/interrupt.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestRow = std::size_t{16} << 20;
constexpr std::size_t kMostCells = 32767;

[[noreturn]] void RefuseFile(const std::string& path, int error) {
  throw Failure(ExitStatus::kLocal, "cannot read the rows " + path + ": " + std::strerror(error));
}

int Opened(const std::string& path) {
  CheckReadable(path, "rows");
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) RefuseFile(path, errno);
  return descriptor;
}

}  // namespace

CsvReader::CsvReader(const std::string& path) : path_(path), descriptor_(Opened(path)) {
  TakeMark();
}

CsvReader::~CsvReader() {
  ::close(descriptor_);
}

void CsvReader::Refuse(const std::string& reason) const {
  throw Failure(ExitStatus::kLocal, path_ + ", line " + std::to_string(line_) + ": " + reason);
}

bool CsvReader::Fill() {
  ssize_t count = 0;
  do {
    ThrowIfInterrupted();
    count = ::read(descriptor_, buffer_.data(), buffer_.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) RefuseFile(path_, errno);
  at_ = 0;
  end_ = static_cast<std::size_t>(count);
  digest_.Add({buffer_.data(), end_});
  return count > 0;
}

int CsvReader::Peek() {
  if (at_ == end_ && !Fill()) return kEnd;
  return static_cast<unsigned char>(buffer_[at_]);
}

int CsvReader::Take() {
  const int byte = Peek();
  if (byte == kEnd) return kEnd;
  ++at_;
  if (byte == '\n') ++nextLine_;
  if (++rowBytes_ > kLongestRow) Refuse("a row is longer than 16 MB; is a quote never closed?");
  return byte;
}

void CsvReader::TakeMark() {
  constexpr char kMark[] = "\xEF\xBB\xBF";
  if (Fill() && end_ >= 3 && std::memcmp(buffer_.data(), kMark, 3) == 0) at_ = 3;
}

// False if there is none. The end of the file is one.
bool CsvReader::TakeLineEnd() {
  const int byte = Peek();
  if (byte != '\r' && byte != '\n' && byte != kEnd) return false;
  Take();
  if (byte == '\r' && Take() != '\n') Refuse("a carriage return without a line feed");
  return true;
}

// After the opening quote.
std::string CsvReader::TakeQuoted() {
  std::string cell;
  for (;;) {
    const int byte = Take();
    if (byte == kEnd) Refuse("a quote is never closed");
    if (byte == '"' && Peek() != '"') return cell;
    if (byte == '"') Take();
    cell += static_cast<char>(byte);
  }
}

std::string CsvReader::TakeCell() {
  std::string cell;
  if (Peek() == '"') {
    Take();
    cell = TakeQuoted();
    const int next = Peek();
    if (next != ',' && next != '\r' && next != '\n' && next != kEnd) Refuse("text after a closing quote");
    return cell;
  }
  for (int byte = Peek(); byte != ',' && byte != '\r' && byte != '\n' && byte != kEnd; byte = Peek()) {
    if (byte == '"') Refuse("a quote in a cell without quotes around it");
    cell += static_cast<char>(Take());
  }
  return cell;
}

bool CsvReader::Next(std::vector<std::string>& cells) {
  cells.clear();
  do {
    rowBytes_ = 0;
    line_ = nextLine_;
    if (Peek() == kEnd) return false;
  } while (TakeLineEnd());
  for (;;) {
    if (cells.size() == kMostCells) Refuse("more than 32767 cells");
    cells.push_back(TakeCell());
    if (!utf8::is_valid(cells.back().begin(), cells.back().end())) Refuse("a cell is not valid UTF-8");
    if (TakeLineEnd()) return true;
    Take();  // the comma
  }
}

}  // namespace qv::cli
