// qv_bench_late URL: the call of a host that knows a ProgID and names of members, measured. The platform
// library alone is linked; the registry that QV_REGISTRY names brings the rest.
#include <stdexcept>
#include <vector>

#include "peer.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/simple_host.h"
#include "script_sample.h"

namespace qv::bench {
namespace {

constexpr Guid kClientServiceRaw = ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");

// The arguments are in reverse, as they travel.
Variant CallByName(IDispatch* object, const char16_t* name, const std::vector<Variant>& arguments,
                   std::uint16_t flags = DISPATCH_METHOD) {
  DISPID id = DISPID_UNKNOWN;
  ThrowIfFailed(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id));
  DISPPARAMS block;
  block.rgvarg = arguments.data();
  block.cArgs = static_cast<std::uint32_t>(arguments.size());
  Variant result;
  ThrowIfFailed(object->Invoke(id, Guid{}, 0, flags, &block, &result, nullptr, nullptr));
  return result;
}

IDispatchPtr CreateClient() {
  Guid classId{};
  ThrowIfFailed(CLSIDFromProgID(u"QvScriptwells.QvScriptwells", &classId));
  IDispatchPtr client;
  ThrowIfFailed(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
  return client;
}

class Late : public Peer {
 public:
  explicit Late(const Task& task) : client_(CreateClient()) {
    const auto provider = CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get());
    CallByName(As<IDispatch>(client_, kClientServiceRaw).get(), u"Init",
               {Variant::FromObject(provider.get())});
    CallByName(client_.get(), u"ServerName", {Variant::FromString(FromUtf8(task.url))}, DISPATCH_PROPERTYPUT);
    model_ = IDispatchPtr(DispatchOf(CallByName(client_.get(), u"ConnectionModel", {})));
    CallByName(model_.get(), u"SetUSID", {Variant::FromString(FromUtf8(kSampleSession))});
    execute_ = {Parameters(), Variant::FromString(Script(kSmallScript)), Variant::FromString(u"JavaScript")};
  }

  std::size_t Call() override {
    answer_ = CallByName(model_.get(), u"Execute", execute_);
    return 0;
  }
  void Check() override {
    if (answer_.Text() != u"hello") throw std::runtime_error("wrong answer");
  }

 private:
  Variant Parameters() const {
    Variant list = CallByName(client_.get(), u"Parameters", {});
    const auto add = [&list](const char16_t* key, const Variant& value) {
      CallByName(DispatchOf(list), u"Add", {value, Variant::FromString(key)});
    };
    add(u"count", Variant::FromInt(42));
    add(u"factor", Variant::FromDouble(2.5));
    add(u"name", Variant::FromString(u"Quorvane"));
    return list;
  }

  const IDispatchPtr client_;
  IDispatchPtr model_;
  std::vector<Variant> execute_;
  Variant answer_;
};

}  // namespace
}  // namespace qv::bench

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  return qv::bench::Measure(
      [](const qv::bench::Task& task) -> std::unique_ptr<qv::bench::Peer> {
        return std::make_unique<qv::bench::Late>(task);
      },
      {argv[1], 0});
}
