// What torture programs do over and over while something is refused to them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "qvscriptwells/result_codes.h"

namespace qv::torture {

struct Outcome {
  HRESULT code = S_OK;
  bool right = true;  // whether a success gave what it should
};

// One host and its objects. Constructor and destructor run with nothing refused.
class Scene {
 public:
  Scene() = default;
  virtual ~Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  // The calls under test; may throw what the library's headers allow, which counts as its code. Called again
  // and again on the same scene, whatever came of the call before.
  virtual Outcome Call() = 0;
  // What a call that failed has left behind, such as half a file; empty if nothing. Nothing is refused here.
  virtual std::string Litter() { return {}; }
};

struct Flow {
  const char* name;
  std::unique_ptr<Scene> (*prepare)();
  bool usesXml = true;  // then it is run with and without a hold on the XML library
};

// The flows of the program that this is linked into.
const std::vector<Flow>& Flows();

// Keeps the XML library started while it lives, where the program can.
std::shared_ptr<void> HoldXmlLibrary();
// Whether it can.
bool CanHoldXmlLibrary();

// The registry of an installation with this home directory, as the program's scenes need it.
std::string RegistryText(const std::string& home);

// Where the scenes of this process find things.
struct Stage {
  std::uint16_t port = 0;   // of the server on 127.0.0.1
  std::string directory{};  // of this process alone, empty at first
  std::string home{};       // the installation's, with its scripts
};
Stage& CurrentStage();

}  // namespace qv::torture
