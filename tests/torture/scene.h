// What torture programs do over and over while something is refused to them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/dispatch.h"

namespace qv::torture {

// One host and its objects. Constructor and destructor run with nothing refused.
class Scene {
 public:
  Scene() = default;
  virtual ~Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  // The calls under test. Whether they returned what they should; throws what the library's headers allow
  // when one fails. Called again and again on the same scene, whatever came of the call before.
  virtual bool Call() = 0;
  // What a call that failed has not removed, such as half a file; empty if nothing. Nothing is refused here.
  virtual std::string Litter() { return {}; }
};

struct Flow {
  const char* name;
  std::unique_ptr<Scene> (*prepare)();
  bool usesXml = true;  // then it is run with and without a hold on the XML library
};

// The flows of the program that this is linked into.
const std::vector<Flow>& Flows();

// The scene of this class.
template <class T>
std::unique_ptr<Scene> Make() {
  return std::make_unique<T>();
}

// Throws for a failed call of the member `name`. The arguments are in reverse, as they travel.
inline void CallByName(IDispatch* object, const char16_t* name, std::uint16_t flags,
                       const std::vector<Variant>& arguments = {}, Variant* result = nullptr,
                       EXCEPINFO* failure = nullptr) {
  DISPID id = DISPID_UNKNOWN;
  ThrowIfFailed(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id));
  DISPPARAMS block;
  block.rgvarg = arguments.data();
  block.cArgs = static_cast<std::uint32_t>(arguments.size());
  ThrowIfFailed(object->Invoke(id, Guid{}, 0, flags, &block, result, failure, nullptr));
}

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
