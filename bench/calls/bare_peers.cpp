// libcurl alone, which drops the answer; and libcurl with the XML library's own tree of what it brings.
#include <stdexcept>

#include <xercesc/util/PlatformUtils.hpp>

#include "bare_client.h"
#include "bare_parse.h"
#include "peer.h"
#include "qvscriptwells/value_types_hold.h"
#include "samples.h"

namespace qv::bench {
namespace {

// The finished request, which these peers only send. Its parameters are written by the library's types.
std::string Body() {
  const ValueTypesHold types;
  return ExecuteBody(Script(kSmallScript), ThreeParameters());
}

class Curl : public Peer {
 public:
  explicit Curl(const Task& task) : client_(task.url, body_) {}
  std::size_t Call() override {
    Post(nullptr);
    return 0;
  }

 protected:
  void Post(std::string* keep) {
    if (!client_.Post(keep)) throw std::runtime_error("libcurl failed");
  }

 private:
  const std::string body_ = Body();
  BareClient client_;
};

class StockTree : public Curl {
 public:
  explicit StockTree(const Task& task) : Curl(task) { xercesc::XMLPlatformUtils::Initialize(); }
  std::size_t Call() override {
    std::string answer;
    Post(&answer);
    if (BareParse(answer) == nullptr) throw std::runtime_error("no document");
    return 0;
  }
};

}  // namespace

std::unique_ptr<Peer> MakeCurl(const Task& task) {
  return std::make_unique<Curl>(task);
}
std::unique_ptr<Peer> MakeStockTree(const Task& task) {
  return std::make_unique<StockTree>(task);
}

}  // namespace qv::bench
