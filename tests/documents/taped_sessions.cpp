// Preloaded into a program of the documents: its sessions record the tape SCRIPTWELLS_RECORD, or play
// SCRIPTWELLS_REPLAY, as those of the command line do. A tape that the program names itself stays.
#include <dlfcn.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "scriptwells/session.h"

// As g++ writes the names of the constructor and of Adopt: the program finds these functions first.
#define TEXT_NAME "RKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
#define CONSTRUCTOR_NAME "_ZN11scriptwells7SessionC1E" TEXT_NAME "RKNS_11CredentialsENS_7OptionsE"
#define ADOPT_NAME "_ZN11scriptwells7Session5AdoptE" TEXT_NAME "S8_NS_7OptionsE"

namespace scriptwells {

namespace {

template <class Function>
Function Next(const char* name) {
  void* const found = ::dlsym(RTLD_NEXT, name);
  if (found == nullptr) std::abort();
  return reinterpret_cast<Function>(found);
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

Options WithTapes(Options options) {
  if (options.record.empty()) options.record = Variable("SCRIPTWELLS_RECORD");
  if (options.replay.empty()) options.replay = Variable("SCRIPTWELLS_REPLAY");
  return options;
}

}  // namespace

__attribute__((visibility("default"))) void Construct(Session* session, const std::string& server,
                                                      const Credentials& credentials,
                                                      Options options) __asm__(CONSTRUCTOR_NAME);
__attribute__((visibility("default"))) Session Adopt(const std::string& server, const std::string& id,
                                                     Options options) __asm__(ADOPT_NAME);

void Construct(Session* session, const std::string& server, const Credentials& credentials, Options options) {
  using Function = void (*)(Session*, const std::string&, const Credentials&, Options);
  Next<Function>(CONSTRUCTOR_NAME)(session, server, credentials, WithTapes(std::move(options)));
}

Session Adopt(const std::string& server, const std::string& id, Options options) {
  using Function = Session (*)(const std::string&, const std::string&, Options);
  return Next<Function>(ADOPT_NAME)(server, id, WithTapes(std::move(options)));
}

}  // namespace scriptwells
