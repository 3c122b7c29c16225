// A user at a shell who types what a document says.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/documents/markdown.h"

namespace qv::documents {

struct Typed {
  std::string output;  // both streams, in the words of the document: its home and its ports
  int exit = -1;       // of one in the background: -1
};

// Whether a command printed what the document says: exactly the same, where "..." in a line is any text; one
// in the background those lines among others. Without lines it has to succeed.
bool Agrees(const Command& command, const Typed& typed);

// A home directory with nothing in it but scriptwells/, a view of the project with the built programs in
// build/demo/. In place of the ports 8080 and 8081 there are free ones.
class Typist {
 public:
  Typist();
  ~Typist();
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;

  // One shell for all of them; whatever it started has been ended afterwards.
  std::vector<Typed> Type(const std::vector<Command>& commands);
  // Of those that the last shell started.
  int ProcessesLeft() const;
  // Names in the temporary directory.
  std::string TemporaryFilesLeft() const;

 private:
  void MakeCheckout() const;
  std::string Script(const std::vector<Command>& commands) const;
  void RunShell(const std::string& script);
  Typed Result(std::size_t index) const;
  std::string ForShell(const std::string& text) const;
  std::string ForDocument(const std::string& text) const;

  std::string root_;
  std::string home_;
  std::vector<std::string> ports_;  // in place of those of the documents
  pid_t shell_ = -1;
};

}  // namespace qv::documents
